#include "settings/sheet/ValueLabel.h"

namespace lumivane {

ValueLabel::ValueLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void ValueLabel::setWidestText(const QString& text) {
  widest_ = text;
  updateGeometry();
}

QSize ValueLabel::sizeHint() const {
  const QSize usual = QLabel::sizeHint();
  const int missing = fontMetrics().horizontalAdvance(widest_) - fontMetrics().horizontalAdvance(text());
  return {usual.width() + qMax(0, missing), usual.height()};
}

}  // namespace lumivane

#include "settings/sheet/PathLabel.h"

#include <QEvent>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr int kFewestChars = 16;  // always to be seen

}  // namespace

PathLabel::PathLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PathLabel::showPath(const std::string& path) {
  path_ = path;
  readable_ = QString::fromStdString(printable(path));
  // A name that looks like mark-up stays a name.
  setToolTip(QStringLiteral("<qt>%1</qt>").arg(readable_.toHtmlEscaped()));
  setAccessibleDescription(readable_);
  fit();
}

// Not of the text: it is fitted to the size, not the other way round.
QSize PathLabel::sizeHint() const {
  const QMargins around = contentsMargins();
  const int gaps = 2 * fontMetrics().horizontalAdvance(u'x');
  return {fontMetrics().averageCharWidth() * kFewestChars + around.left() + around.right() + gaps,
          fontMetrics().height() + around.top() + around.bottom() + gaps / 2};
}

void PathLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  fit();
}

void PathLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fit();
}

void PathLabel::fit() {
  setMargin(fontMetrics().horizontalAdvance(u'x') / 2);
  const int room = contentsRect().width() - 2 * margin();
  setText(fontMetrics().elidedText(readable_, Qt::ElideMiddle, qMax(0, room)));
}

}  // namespace lumivane

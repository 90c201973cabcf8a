#include "settings/sheet/NumberField.h"

#include <QKeyEvent>
#include <utility>

namespace lumivane {
namespace {

constexpr int kDigits = 8;      // to be seen at once
constexpr int kMostChars = 64;  // no number is longer

}  // namespace

NumberField::NumberField(QWidget* parent) : QLineEdit(parent) {
  setMaxLength(kMostChars);
  setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  setInputMethodHints(Qt::ImhFormattedNumbersOnly);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(this, &QLineEdit::textEdited, this, [this] { typed_ = true; });
  connect(this, &QLineEdit::editingFinished, this, &NumberField::finish);
}

void NumberField::showText(const QString& text) {
  typed_ = false;
  if (text != this->text()) setText(text);
}

// As wide as QLineEdit likes to be, with room for fewer characters.
QSize NumberField::sizeHint() const {
  const QSize usual = QLineEdit::sizeHint();
  const int usualText = fontMetrics().horizontalAdvance(u'x') * 17;
  return {usual.width() - usualText + fontMetrics().horizontalAdvance(u'0') * kDigits, usual.height()};
}

// Return is for this field: it must not reach the dialog, where it would press a button.
void NumberField::keyPressEvent(QKeyEvent* event) {
  QLineEdit::keyPressEvent(event);
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return;
  selectAll();
  event->accept();
}

void NumberField::finish() {
  if (std::exchange(typed_, false)) emit entered();
}

}  // namespace lumivane

#include "settings/sheet/PatternsField.h"

#include <QFocusEvent>
#include <QFontDatabase>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextDocument>
#include <utility>

namespace lumivane {
namespace {

constexpr int kLinesShown = 4;
constexpr qsizetype kMostCharsChecked = 65'536;  // more is no list that a person keeps

}  // namespace

PatternsField::PatternsField(QWidget* parent) : QPlainTextEdit(parent) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  connect(this, &QPlainTextEdit::textChanged, this, &PatternsField::changed);
}

void PatternsField::setCheck(PatternCheck check) {
  check_ = std::move(check);
  this->check();
}

std::string PatternsField::patterns() const {
  return shown_ ? *shown_ : typedText().toStdString();
}

// Not toPlainText(), which turns non-breaking spaces into plain ones.
QString PatternsField::typedText() const {
  QString text = document()->toRawText();
  return text.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
}

void PatternsField::showPatterns(const std::string& text) {
  {
    const QScopedValueRollback filling(filling_, true);
    const QString wanted = QString::fromStdString(text);
    // The place of the cursor is kept where nothing changes.
    if (wanted != typedText()) setPlainText(wanted);
  }
  shown_ = text;
  editing_ = false;
  check();
}

QSize PatternsField::sizeHint() const {
  const int line = fontMetrics().lineSpacing();
  const int around = 2 * frameWidth() + qRound(2 * document()->documentMargin());
  return {QPlainTextEdit::sizeHint().width(), kLinesShown * line + around};
}

void PatternsField::focusOutEvent(QFocusEvent* event) {
  QPlainTextEdit::focusOutEvent(event);
  // A context menu, or another window for a while: the editing goes on.
  if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason) return;
  if (std::exchange(editing_, false)) emit editingEnded();
}

void PatternsField::changed() {
  if (filling_) return;
  shown_.reset();
  if (!std::exchange(editing_, true)) emit editingBegan();
  check();
}

void PatternsField::check() {
  std::optional<PatternFault> fault;
  if (check_ && document()->characterCount() <= kMostCharsChecked) fault = check_(patterns());
  markLine(fault ? fault->line : 0);
  emit faultFound(
      fault ? QStringLiteral("Line %1: %2.").arg(fault->line).arg(QString::fromStdString(fault->reason))
            : QString());
}

// Underlined in the colour of the text; 0 = no line.
void PatternsField::markLine(std::size_t line) {
  QList<QTextEdit::ExtraSelection> marks;
  const QTextBlock block =
      line == 0 ? QTextBlock() : document()->findBlockByNumber(static_cast<int>(line) - 1);
  if (block.isValid()) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(block);
    mark.cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    mark.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    marks.append(mark);
  }
  setExtraSelections(marks);
}

}  // namespace lumivane

#include "settings/sheet/HelpDialog.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <utility>

#include "settings/sheet/RichTextDocument.h"

namespace lumivane {
namespace {

constexpr int kCharsAcross = 96;  // of the whole window
constexpr int kLinesDown = 32;
constexpr int kMarginChars = 2;
constexpr int kDeepestHeadingListed = 2;  // below the document's title, which is 1

}  // namespace

HelpDialog::HelpDialog()
    : parts_(new QSplitter), headings_(new QListWidget), browser_(new QTextBrowser), search_(new QLineEdit) {
  setWindowTitle(tr("Lumivane Help"));
  headings_->setAccessibleName(tr("Contents"));
  browser_->setAccessibleName(tr("Help"));
  browser_->setOpenLinks(false);
  headings_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  search_->setClearButtonEnabled(true);
  arrange();
  connect(browser_, &QTextBrowser::anchorClicked, this, &HelpDialog::linkClicked);
  connect(headings_, &QListWidget::currentRowChanged, this, &HelpDialog::goToHeading);
  connect(search_, &QLineEdit::returnPressed, this, &HelpDialog::find);
  connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QDialog::reject);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, search_, [this] {
    search_->setFocus();
    search_->selectAll();
  });
  connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this, &HelpDialog::find);
}

void HelpDialog::arrange() {
  parts_->addWidget(headings_);
  parts_->addWidget(browser_);
  parts_->setChildrenCollapsible(false);
  parts_->setStretchFactor(1, 1);
  auto* label = new QLabel(tr("&Find"));
  label->setBuddy(search_);
  auto* close = new QPushButton(tr("&Close"));
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* below = new QHBoxLayout;
  below->addWidget(label);
  below->addWidget(search_, 1);
  below->addStretch(1);
  below->addWidget(close);
  auto* all = new QVBoxLayout(this);
  all->addWidget(parts_, 1);
  all->addLayout(below);
  resize(fontMetrics().averageCharWidth() * kCharsAcross, fontMetrics().lineSpacing() * kLinesDown);
  browser_->setFocus();
}

void HelpDialog::showText(RichText text) {
  text_ = std::move(text);
  render();
  listHeadings();
  browser_->moveCursor(QTextCursor::Start);
}

void HelpDialog::render() {
  const int place = browser_->verticalScrollBar()->value();
  browser_->document()->setDefaultFont(browser_->font());
  browser_->document()->setDocumentMargin(browser_->fontMetrics().averageCharWidth() * kMarginChars);
  showRichText(*browser_->document(), text_, palette());
  browser_->verticalScrollBar()->setValue(place);
}

void HelpDialog::listHeadings() {
  const QSignalBlocker quiet(headings_);
  headings_->clear();
  for (QTextBlock block = browser_->document()->begin(); block.isValid(); block = block.next()) {
    const int level = block.blockFormat().headingLevel();
    if (level == 0 || level > kDeepestHeadingListed) continue;
    auto* item = new QListWidgetItem(block.text(), headings_);
    item->setData(Qt::UserRole, block.blockNumber());
  }
  const int list = headings_->sizeHintForColumn(0) + 4 * headings_->frameWidth();
  parts_->setSizes({list, width() - list});
}

// The heading at the upper edge, as far as the text below it reaches.
void HelpDialog::goToHeading(int row) {
  const QListWidgetItem* item = headings_->item(row);
  if (item == nullptr) return;
  const QTextBlock block = browser_->document()->findBlockByNumber(item->data(Qt::UserRole).toInt());
  if (!block.isValid()) return;
  browser_->setTextCursor(QTextCursor(block));
  const int above = browser_->cursorRect().top();
  browser_->verticalScrollBar()->setValue(browser_->verticalScrollBar()->value() + above);
}

// From the cursor on, then from the beginning.
void HelpDialog::find() {
  if (search_->text().isEmpty() || browser_->find(search_->text())) return;
  const QTextCursor before = browser_->textCursor();
  browser_->moveCursor(QTextCursor::Start);
  if (!browser_->find(search_->text())) browser_->setTextCursor(before);
}

// The text's colours come from the palette that it was made with.
void HelpDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) render();
}

}  // namespace lumivane

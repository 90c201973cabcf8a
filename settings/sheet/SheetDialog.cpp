#include "settings/sheet/SheetDialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollArea>

namespace lumivane {
namespace {

bool isReturn(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

SheetDialog::SheetDialog() {
  setWindowModality(Qt::WindowModal);
  qApp->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { showFocused(now); });
}

void SheetDialog::reject() {
  emit dismissed();
}

// Return presses the button that has the keys, and no other.
void SheetDialog::keyPressEvent(QKeyEvent* event) {
  if (!isReturn(*event)) return QDialog::keyPressEvent(event);
  event->accept();
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  if (button != nullptr && !event->isAutoRepeat()) button->click();
}

// A dialog that refuses to close would keep the program.
void SheetDialog::closeEvent(QCloseEvent* event) {
  if (quitting_) return event->accept();
  QDialog::closeEvent(event);
}

void SheetDialog::passWheelOn(QWidget& control) {
  control.installEventFilter(this);
}

bool SheetDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp) {
    if (event->type() == QEvent::Quit) quits();
    return false;
  }
  // The page scrolls instead.
  const bool mistaken = event->type() == QEvent::Wheel && watched->isWidgetType() &&
                        !static_cast<QWidget*>(watched)->hasFocus();
  if (mistaken) event->ignore();
  return mistaken;
}

void SheetDialog::quits() {
  quitting_ = true;
  // Another window may refuse.
  QMetaObject::invokeMethod(
      this, [this] { quitting_ = false; }, Qt::QueuedConnection);
}

// By Tab Qt does this; by mnemonic it does not.
void SheetDialog::showFocused(QWidget* widget) const {
  if (widget == nullptr || !isAncestorOf(widget)) return;
  for (QWidget* above = widget->parentWidget(); above != nullptr; above = above->parentWidget()) {
    auto* page = qobject_cast<QScrollArea*>(above);
    if (page != nullptr) return page->ensureWidgetVisible(widget);
  }
}

}  // namespace lumivane

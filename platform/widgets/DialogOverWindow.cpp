#include "platform/widgets/DialogOverWindow.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QWindow>
#include <utility>

namespace lumivane {
namespace {

constexpr double kShareOfDisplay = 0.92;

// Shifted as far as needed to lie within the room, its upper left first of all.
QPoint broughtInto(const QRect& room, QRect frame) {
  return {qMax(room.left(), qMin(frame.left(), room.right() + 1 - frame.width())),
          qMax(room.top(), qMin(frame.top(), room.bottom() + 1 - frame.height()))};
}

}  // namespace

DialogOverWindow::DialogOverWindow(QDialog& dialog, WindowSource window)
    : dialog_(dialog), window_(std::move(window)) {
  dialog_.installEventFilter(this);
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
          [this](const QWindow* focused) { focusWent(focused); });
}

void DialogOverWindow::show() {
  if (!dialog_.isVisible()) {
    dialog_.winId();  // makes the native window, which alone can lie over another
    dialog_.windowHandle()->installEventFilter(this);
    layOver(windowInFront());
    place();
    dialog_.show();
  } else if (!dialog_.isModal()) {
    layOver(windowInFront());
  }
  dialog_.raise();
  dialog_.activateWindow();
}

QWindow* DialogOverWindow::windowInFront() const {
  QWindow* modal = QGuiApplication::modalWindow();
  return modal != nullptr && modal != dialog_.windowHandle() ? modal : window_();
}

void DialogOverWindow::layOver(QWindow* parent) {
  QWindow* own = dialog_.windowHandle();
  if (own == nullptr || own == parent) return;
  own->setTransientParent(parent);
  if (parent == parent_) return;
  if (parent_ != nullptr) parent_->disconnect(this);
  parent_ = parent;
  if (parent == nullptr) return;
  connect(parent, &QWindow::visibleChanged, this, &DialogOverWindow::parentShown);
  connect(parent, &QObject::destroyed, this, [this] { parentShown(false); });
}

void DialogOverWindow::layOverWhatIsInFront() {
  if (dialog_.isVisible()) layOver(windowInFront());
}

void DialogOverWindow::parentShown(bool shown) {
  // By way of the loop: whoever closes the window is still at it.
  if (!shown) QMetaObject::invokeMethod(this, &DialogOverWindow::parentGone, Qt::QueuedConnection);
}

void DialogOverWindow::parentGone() {
  if (!dialog_.isVisible() || (parent_ != nullptr && parent_->isVisible())) return;
  const QWindow* front = windowInFront();
  if (front != nullptr && front->isVisible()) return layOverWhatIsInFront();
  if (windowGoes_) windowGoes_();
}

// Where there is a window manager, this is no more than a wish; on Wayland, not even that.
void DialogOverWindow::place() const {
  const QScreen* screen = parent_ != nullptr ? parent_->screen() : QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  // How high the frame will be is not known before it is there.
  const int frameHeight = dialog_.style()->pixelMetric(QStyle::PM_TitleBarHeight);
  const QRect room = screen->availableGeometry().adjusted(0, 0, 0, -frameHeight);
  const QSize most = (QSizeF(room.size()) * kShareOfDisplay).toSize();
  const bool wishesSize = !dialog_.testAttribute(Qt::WA_Resized) && dialog_.sizeHint().isValid();
  if (wishesSize) dialog_.resize(dialog_.sizeHint());
  dialog_.resize(dialog_.size().boundedTo(most));
  QRect frame(QPoint(), dialog_.size());
  frame.moveCenter(parent_ != nullptr ? parent_->geometry().center() : room.center());
  dialog_.move(broughtInto(room, frame));
}

bool DialogOverWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == dialog_.windowHandle()) return handsKeysOn(event);
  if (watched != &dialog_) return false;
  switch (event->type()) {
    case QEvent::Hide:
      // Not when the user is with another program by now.
      if (QGuiApplication::applicationState() == Qt::ApplicationActive) {
        QMetaObject::invokeMethod(this, &DialogOverWindow::returnKeys, Qt::QueuedConnection);
      }
      break;
    case QEvent::WindowBlocked:
      // A modal dialog has opened over the same window. Standing for itself, this one can be used beside it, and is not
      // kept in front of it.
      if (!dialog_.isModal()) {
        QMetaObject::invokeMethod(this, &DialogOverWindow::standForItself, Qt::QueuedConnection);
      }
      break;
    default:
      break;
  }
  return false;
}

// A window manager may refuse the dialog the keys that Qt believes it has (its wish was older than another's), and then
// nothing tells Qt, when the dialog closes, that they are the window's: Qt gives them to a dialog that nobody sees.
bool DialogOverWindow::handsKeysOn(QEvent* event) const {
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return false;
  if (dialog_.isVisible()) return false;
  QWindow* front = windowInFront();
  return front != nullptr && front->isVisible() && QCoreApplication::sendEvent(front, event);
}

// Without a window manager, nobody else would. The window system may not have told yet that the dialog lost them.
void DialogOverWindow::returnKeys() const {
  const QWindow* focused = QGuiApplication::focusWindow();
  if (dialog_.isVisible() || (focused != nullptr && focused != dialog_.windowHandle())) return;
  QWindow* front = windowInFront();
  if (front != nullptr && front->isVisible()) front->requestActivate();
}

void DialogOverWindow::focusWent(const QWindow* window) {
  if (!dialog_.isVisible()) return;
  if (dialog_.isModal()) return keepKeys(window);
  // The modal dialog that this one made way for is gone.
  if (parent_ == nullptr && QGuiApplication::modalWindow() == nullptr) layOverWhatIsInFront();
}

// A click on the picture takes the keys away from the modal dialog, on some X servers. It would look dead.
void DialogOverWindow::keepKeys(const QWindow* focused) {
  if (focused == nullptr || focused != parent_) return;
  QMetaObject::invokeMethod(this, &DialogOverWindow::takeKeys, Qt::QueuedConnection);
}

void DialogOverWindow::takeKeys() const {
  QWindow* modal = QGuiApplication::modalWindow();
  if (modal == nullptr || !dialog_.isVisible()) return;
  modal->raise();
  modal->requestActivate();
}

}  // namespace lumivane

#include "platform/linux/NativeWindow.h"

#include <QDir>
#include <QDropEvent>
#include <QExposeEvent>
#include <QFile>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPlatformSurfaceEvent>
#include <QScreen>
#include <QUrl>
#include <cmath>
#include <optional>
#include <utility>

#include "platform/linux/QtDisplays.h"
#include "platform/linux/QtKeyEvents.h"

namespace lumivane {
namespace {

// A QWindow is not told when the user lets go of an edge: a pause of this length counts as that.
constexpr std::chrono::milliseconds kQuietAfterResize{150};

constexpr double kSlowestRefresh = 1;  // Hz; less is a screen that does not know
constexpr double kUsualRefresh = 60;   // Hz

Nanoseconds refreshIntervalOf(const QScreen* screen) {
  const double rate = screen == nullptr ? 0 : screen->refreshRate();
  return wholeNanoseconds(Seconds(1 / (rate >= kSlowestRefresh ? rate : kUsualRefresh)));
}

// Of several the first.
std::optional<std::string> droppedFile(const QDropEvent& event) {
  const QMimeData* data = event.mimeData();
  if (data == nullptr || data->urls().isEmpty() || !data->urls().first().isLocalFile()) return std::nullopt;
  const QString path = QDir::cleanPath(data->urls().first().toLocalFile());
  if (!path.startsWith('/')) return std::nullopt;
  return QFile::encodeName(path).toStdString();
}

bool opensMenu(const QKeyEvent& event) {
  return event.key() == Qt::Key_Menu || event.key() == Qt::Key_F10;
}

}  // namespace

SlideshowWindow::NativeWindow::NativeWindow(const QSurfaceFormat& format, WindowListener& listener)
    : listener_(listener) {
  setSurfaceType(QSurface::OpenGLSurface);
  QSurfaceFormat inStepWithDisplay = format;
  inStepWithDisplay.setSwapInterval(1);
  setFormat(inStepWithDisplay);
  resizeQuiet_.setSingleShot(true);
  resizeQuiet_.setInterval(kQuietAfterResize);
  connect(&resizeQuiet_, &QTimer::timeout, this, [this] { listener_.windowLiveResizeEnded(); });
  // Besides the event, which comes only when a window manager confirms.
  connect(this, &QWindow::windowStateChanged, this, [this] { statesChanged(windowStates()); });
  connect(this, &QWindow::screenChanged, this, [this](QScreen* screen) {
    watchRefreshRateOf(screen);
    if (screen != nullptr) listener_.windowDisplayChanged(displayNumberOf(screen));
  });
  watchRefreshRateOf(screen());
}

SlideshowWindow::NativeWindow::~NativeWindow() {
  // Here, while the overrides still stand: QWindow's own destructor would destroy the surface behind our back.
  destroy();
}

void SlideshowWindow::NativeWindow::setReportsMouseMoves(bool reports) {
  reportsMouseMoves_ = reports;
  mouse_.forget();
}

bool SlideshowWindow::NativeWindow::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::Close:
      closing();
      break;
    case QEvent::PlatformSurface:
      surfaceComesOrGoes(static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                         QPlatformSurfaceEvent::SurfaceCreated);
      break;
    case QEvent::WindowStateChange:
      statesChanged(windowStates());
      break;
    case QEvent::Enter:
      mouse_.forget();
      break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
      considerDrop(*static_cast<QDropEvent*>(event));
      return true;
    case QEvent::Drop:
      takeDrop(*static_cast<QDropEvent*>(event));
      return true;
    default:
      break;
  }
  return QWindow::event(event);
}

void SlideshowWindow::NativeWindow::considerDrop(QDropEvent& event) {
  event.setDropAction(Qt::LinkAction);  // nothing is moved or copied
  event.setAccepted(droppedFile(event).has_value());
}

void SlideshowWindow::NativeWindow::takeDrop(QDropEvent& event) {
  considerDrop(event);
  if (const auto path = droppedFile(event)) listener_.fileDropped(*path);
}

void SlideshowWindow::NativeWindow::closing() {
  if (std::exchange(closeTold_, true)) return;
  listener_.windowWillClose();
}

void SlideshowWindow::NativeWindow::surfaceComesOrGoes(bool there) {
  // Before it goes, so that nothing is drawn to a window that is gone: the listener waits for the frame in hand.
  if (!there) setShown(false);
  surfaceState_.setDrawable(there);
  if (there) closeTold_ = false;
  if (there) noteSurface();
}

void SlideshowWindow::NativeWindow::setShown(bool shown) {
  // Told anew for every expose event, since what was drawn may be lost; that it is hidden, once.
  if (!shown && !shown_) return;
  shown_ = shown;
  listener_.windowExposed(shown);
}

void SlideshowWindow::NativeWindow::exposeEvent(QExposeEvent*) {
  noteSurface();
  setShown(isExposed());
}

void SlideshowWindow::NativeWindow::resizeEvent(QResizeEvent* event) {
  mouse_.forget();
  noteSurface();
  listener_.windowResized(
      {static_cast<double>(event->size().width()), static_cast<double>(event->size().height())});
  resizeQuiet_.start();
}

// Qt 6.4 has no event for another scale: it is looked at whenever something else has happened.
void SlideshowWindow::NativeWindow::noteSurface() {
  const double scale = devicePixelRatio();
  surfaceState_.setSizePx(
      {static_cast<int>(std::lround(width() * scale)), static_cast<int>(std::lround(height() * scale))});
  surfaceState_.setRefreshInterval(refreshIntervalOf(screen()));
  if (std::exchange(scale_, scale) != scale && shown_) listener_.windowScaleChanged(scale);
}

void SlideshowWindow::NativeWindow::watchRefreshRateOf(QScreen* screen) {
  disconnect(refreshRateChanges_);
  noteSurface();
  if (screen == nullptr) return;
  refreshRateChanges_ = connect(screen, &QScreen::refreshRateChanged, this, [this] { noteSurface(); });
}

void SlideshowWindow::NativeWindow::statesChanged(Qt::WindowStates states) {
  const Qt::WindowStates changed = std::exchange(states_, states) ^ states;
  mouse_.forget();
  if (changed.testFlag(Qt::WindowMinimized)) listener_.windowMinimized(states.testFlag(Qt::WindowMinimized));
  if (changed.testFlag(Qt::WindowFullScreen)) {
    listener_.windowFullScreenChanged(states.testFlag(Qt::WindowFullScreen));
  }
}

void SlideshowWindow::NativeWindow::keyPressEvent(QKeyEvent* event) {
  event->accept();
  if (const auto modifier = modifierOfKey(event->key())) {
    if (!event->isAutoRepeat()) listener_.modifiersChanged(modifiersFrom(event->modifiers()) | *modifier);
    return;
  }
  if (opensMenu(*event)) return listener_.menuRequested({width() / 2.0, height() / 2.0});
  listener_.keyDown(keyEventFrom(event->key(), event->text(), event->modifiers(), event->isAutoRepeat()));
}

void SlideshowWindow::NativeWindow::keyReleaseEvent(QKeyEvent* event) {
  event->accept();
  const auto modifier = modifierOfKey(event->key());
  if (modifier && !event->isAutoRepeat()) {
    listener_.modifiersChanged(modifiersFrom(event->modifiers()) & ~*modifier);
  }
}

void SlideshowWindow::NativeWindow::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::RightButton) listener_.menuRequested(contentPoint(event->position()));
}

void SlideshowWindow::NativeWindow::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  const QPointF place = event->globalPosition();
  if (mouse_.movedTo({place.x(), place.y()}) && reportsMouseMoves_) {
    listener_.mouseMoved(contentPoint(event->position()));
  }
}

void SlideshowWindow::NativeWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) listener_.mouseDoubleClicked(contentPoint(event->position()));
}

PointPt SlideshowWindow::NativeWindow::contentPoint(QPointF position) const {
  return {position.x(), height() - position.y()};
}

}  // namespace lumivane

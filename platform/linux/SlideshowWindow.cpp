#include "platform/linux/SlideshowWindow.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include "platform/linux/NativeWindow.h"
#include "platform/linux/QtDisplays.h"
#include "platform/linux/X11WindowManager.h"

namespace lumivane {
namespace {

constexpr QSize kSmallest(320, 200);
constexpr double kShareOfDisplay = 0.75;

QString qtText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// The height at which y turns over between Qt's origin (upper left) and ours (lower left of the primary display).
int primaryHeight() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  return primary == nullptr ? 0 : primary->geometry().bottom() + 1;
}

QRect middleOfPrimaryDisplay() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  if (primary == nullptr) return {QPoint(), kSmallest};
  const QRect room = primary->availableGeometry();
  QRect frame(QPoint(), (QSizeF(room.size()) * kShareOfDisplay).toSize().expandedTo(kSmallest));
  frame.moveCenter(room.center());
  return frame;
}

// Smaller and shifted as far as needed to lie on the display that it touches most, or else the primary one.
QRect ontoADisplay(QRect frame) {
  const QScreen* screen = QGuiApplication::screenAt(frame.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return frame;
  const QRect room = screen->availableGeometry();
  frame.setSize(frame.size().boundedTo(room.size()));
  frame.moveTo(qBound(room.left(), frame.left(), room.right() + 1 - frame.width()),
               qBound(room.top(), frame.top(), room.bottom() + 1 - frame.height()));
  return frame;
}

}  // namespace

SlideshowWindow::SlideshowWindow(const QSurfaceFormat& format, WindowListener& listener)
    : native_(std::make_unique<NativeWindow>(format, listener)),
      screenLoss_(*native_, [this](bool wasFullScreen) { standOnADisplay(wasFullScreen); }) {
  native_->setMinimumSize(kSmallest);
  native_->setGeometry(middleOfPrimaryDisplay());
}

SlideshowWindow::~SlideshowWindow() = default;

RectPt SlideshowWindow::frame() const {
  const QRect frame = native_->geometry();
  const bool placeKnown = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
  const PointPt origin{static_cast<double>(frame.left()),
                       static_cast<double>(primaryHeight() - frame.bottom() - 1)};
  return {placeKnown ? origin : PointPt{},
          {static_cast<double>(frame.width()), static_cast<double>(frame.height())}};
}

void SlideshowWindow::placeAt(const RectPt& frame) {
  const QSize size = QSizeF(frame.size.width, frame.size.height).toSize().expandedTo(kSmallest);
  const QPoint upperLeft(qRound(frame.origin.x), primaryHeight() - qRound(frame.origin.y) - size.height());
  const QRect place = ontoADisplay(QRect(upperLeft, size));
  // Before it is shown a window belongs to the primary display, wherever it is to stand.
  if (QScreen* const screen = QGuiApplication::screenAt(place.center())) native_->setScreen(screen);
  native_->setGeometry(place);
}

void SlideshowWindow::setFormat(const QSurfaceFormat& format) {
  native_->setFormat(format);
}

DisplayNumber SlideshowWindow::displayNumber() const {
  return displayNumberOf(native_->screen());
}
double SlideshowWindow::scale() const {
  return native_->devicePixelRatio();
}
bool SlideshowWindow::isFullScreen() const {
  return native_->windowStates().testFlag(Qt::WindowFullScreen);
}
bool SlideshowWindow::isMinimized() const {
  return native_->windowStates().testFlag(Qt::WindowMinimized);
}
bool SlideshowWindow::isExposed() const {
  return native_->isExposed();
}

bool SlideshowWindow::isMaximized() const {
  return native_->windowStates().testFlag(Qt::WindowMaximized) && !isFullScreen();
}

// Not QWindow::show(), which would undo a full screen that was asked for before.
void SlideshowWindow::show() {
  native_->setVisible(true);
  native_->requestActivate();
}

void SlideshowWindow::toggleFullScreen() {
  const bool entering = !isFullScreen();
  if (entering) frameBeforeFullScreen_ = native_->geometry();
  native_->setWindowStates((native_->windowStates() ^ Qt::WindowFullScreen) &
                           ~Qt::WindowStates(Qt::WindowMinimized));
  // Nobody else will. Where there is a window manager, it takes a size from us as the wish to leave full screen.
  if (!lacksWindowManager()) return;
  native_->setGeometry(entering && native_->screen() != nullptr ? native_->screen()->geometry()
                                                                : frameBeforeFullScreen_);
}

// Where the window would be out of sight, or no longer fill a display.
void SlideshowWindow::standOnADisplay(bool fullScreen) {
  if (isFullScreen() && !lacksWindowManager()) return;
  const QRect frame = ontoADisplay(isFullScreen() ? frameBeforeFullScreen_ : native_->geometry());
  if (isFullScreen()) toggleFullScreen();
  if (frame != native_->geometry()) native_->setGeometry(frame);
  if (fullScreen) toggleFullScreen();
}

void SlideshowWindow::close() {
  native_->close();
}
void SlideshowWindow::setTitle(std::string_view utf8) {
  native_->setTitle(qtText(utf8));
}

void SlideshowWindow::setCursorHidden(bool hidden) {
  if (hidden) native_->setCursor(Qt::BlankCursor);
  if (!hidden) native_->unsetCursor();
}

void SlideshowWindow::setReportsMouseMoves(bool reports) {
  native_->setReportsMouseMoves(reports);
}
QWindow& SlideshowWindow::qtWindow() {
  return *native_;
}
const WindowSurfaceState& SlideshowWindow::surfaceState() const {
  return native_->surfaceState();
}

}  // namespace lumivane

#include "platform/linux/ScreenLoss.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <utility>

namespace lumivane {
namespace {

constexpr std::chrono::milliseconds kTimeForOthers{500};

}  // namespace

ScreenLoss::ScreenLoss(const QWindow& window, Lost lost) : window_(window), lost_(std::move(lost)) {
  settled_.setSingleShot(true);
  settled_.setInterval(kTimeForOthers);
  connect(&settled_, &QTimer::timeout, this, [this] { lost_(std::exchange(wasFullScreen_, false)); });
  connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](const QScreen* screen) { removed(screen); });
}

// Qt says so before it moves the window.
void ScreenLoss::removed(const QScreen* screen) {
  if (window_.screen() != screen) return;
  wasFullScreen_ = wasFullScreen_ || window_.windowStates().testFlag(Qt::WindowFullScreen);
  settled_.start();
}

}  // namespace lumivane

// The heartbeat: whether a change of picture is due, and the freezing and thawing of motion.
#include "engine/FadeLength.h"
#include "engine/FormattedText.h"
#include "engine/LumivaneView.h"

namespace lumivane {
namespace {

// How long after a cross-dissolve its motion may be frozen.
constexpr Seconds kAfterFade{0.1};

}  // namespace

void LumivaneView::startAnimation() {
  logMessage(formatted("start animation  (id = %p)", static_cast<void*>(this)), false);
  pause_animation_ = false;
}

void LumivaneView::stopAnimation() {
  logMessage(formatted("stop animation   (id = %p)", static_cast<void*>(this)), false);
  pause_animation_ = true;
  saveLastRunInfo();
}

void LumivaneView::animateOneFrame() {
  if (queryIsInProgress_ || pause_animation_) return;
  playPendingKey();
  if (blankScreen_) return;
  if (pauseZooming_) freezeMotion();
  if (paused_ || !changeIsDue()) return;
  changePicture();
}

std::optional<MediaTime> LumivaneView::nextFrameWanted() const {
  if (queryIsInProgress_ || pause_animation_) return std::nullopt;
  if (host_.tables.pendingKeyEventsByDisplay.contains(displayID_)) return MediaTime{};
  if (blankScreen_) return std::nullopt;
  std::optional<MediaTime> wanted;
  if (!paused_) wanted = lastFrameTime_ + std::chrono::seconds(settings_.durationPerImage_);
  if (pauseZooming_ && currentLayer_->properties().speed != 0) {
    const MediaTime freeze = lastFrameTime_ + wholeNanoseconds(actual_fading_duration_ + kAfterFade);
    wanted = settings_.crossDissolve_ ? std::min(freeze, wanted.value_or(freeze)) : MediaTime{};
  }
  return wanted;
}

void LumivaneView::playPendingKey() {
  auto& pending = host_.tables.pendingKeyEventsByDisplay;
  if (pending.empty()) return;
  const auto found = pending.find(displayID_);
  if (found == pending.end()) return;
  const KeyEvent event = found->second;
  keyDown(event);
  pending.erase(displayID_);
}

bool LumivaneView::changeIsDue() const {
  return timeSinceLastChange() >= std::chrono::seconds(settings_.durationPerImage_);
}

Nanoseconds LumivaneView::timeSinceLastChange() const {
  return std::chrono::abs(host_.clock.now() - lastFrameTime_);
}

// A running cross-dissolve is allowed to finish first.
void LumivaneView::freezeMotion() {
  if (!settings_.crossDissolve_ || timeSinceLastChange() > actual_fading_duration_ + kAfterFade)
    pauseAnimation();
}

void LumivaneView::pauseAnimation() {
  const Seconds local = currentLayer_->convertTime(mediaNow());
  if (currentLayer_->properties().speed == 0) return;
  currentLayer_->edit([local](LayerProperties& p) {
    p.speed = 0;
    p.timeOffset = local;
  });
}

void LumivaneView::resumeAnimation() {
  // A layer that runs has nothing to catch up with; setting its time anew would throw its motion back to the start.
  if (currentLayer_->properties().speed != 0) return;
  const Seconds frozenAt = currentLayer_->properties().timeOffset;
  currentLayer_->edit([](LayerProperties& p) {
    p.speed = 1;
    p.timeOffset = Seconds{0};
    p.beginTime = Seconds{0};
  });
  const Seconds begin = currentLayer_->convertTime(mediaNow()) - frozenAt;
  currentLayer_->edit([begin](LayerProperties& p) { p.beginTime = begin; });
}

}  // namespace lumivane

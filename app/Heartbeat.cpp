#include "app/Heartbeat.h"

#include <algorithm>
#include <utility>

namespace lumivane {
namespace {

constexpr Nanoseconds kFrameInterval = std::chrono::milliseconds{20};

}  // namespace

Heartbeat::Heartbeat(MainLoop& mainLoop, const Clock& clock, Wanted wanted, Job beat)
    : mainLoop_(mainLoop),
      clock_(clock),
      wanted_(std::move(wanted)),
      beat_(std::move(beat)),
      lastBeat_(clock.now()) {}

void Heartbeat::turnEnded() {
  std::optional<MediaTime> next = wanted_();
  if (next) next = inStep(*next);
  if (next == next_) return;
  next_ = next;
  watch_.reset();
  if (next) beatAt(*next);
}

// Whatever a beat has put off until the same moment comes first, as it would if the heart had never paused.
MediaTime Heartbeat::inStep(MediaTime wanted) const {
  const Nanoseconds wait = std::max(wanted - lastBeat_, Nanoseconds{1});
  return lastBeat_ + (wait + kFrameInterval - Nanoseconds{1}) / kFrameInterval * kFrameInterval;
}

void Heartbeat::beatAt(MediaTime time) {
  watch_ = std::make_shared<bool>(true);
  mainLoop_.after(std::max(time - clock_.now(), Nanoseconds{0}), [this, watch = std::weak_ptr(watch_)] {
    if (watch.expired()) return;
    next_.reset();
    lastBeat_ = clock_.now();
    beat_();
  });
}

}  // namespace lumivane

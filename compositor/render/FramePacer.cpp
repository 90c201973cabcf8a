#include "compositor/render/FramePacer.h"

#include <algorithm>
#include <chrono>

namespace lumivane {
namespace {

using std::chrono::milliseconds;

constexpr Nanoseconds kUsualInterval{16'666'667};

Nanoseconds sane(Nanoseconds interval) {
  return interval >= milliseconds{1} && interval <= milliseconds{1000} ? interval : kUsualInterval;
}

}  // namespace

FramePacer::FramePacer(Nanoseconds interval) : interval_(sane(interval)) {}

void FramePacer::setInterval(Nanoseconds interval) {
  if (sane(interval) == interval_) return;
  interval_ = sane(interval);
  rest();
}

Nanoseconds FramePacer::waitBefore(MediaTime now) const {
  if (!lastBegin_) return Nanoseconds{0};
  const MediaTime earliest = usesDeadlines() ? deadline_ : *lastBegin_ + interval_ * 3 / 4;
  return std::clamp(earliest - now, Nanoseconds{0}, interval_);
}

MediaTime FramePacer::begin(MediaTime now) {
  MediaTime seen = now + interval_;
  if (lastBegin_) {
    notePeriod(now - *lastBegin_);
    const MediaTime expected = lastSeen_ + interval_;
    const Nanoseconds error = seen - expected;
    if (std::chrono::abs(error) < interval_ / 4) seen = expected + error / 10;
    seen = std::max(seen, lastSeen_);
  }
  const bool inTime = usesDeadlines() && now - deadline_ < interval_;
  deadline_ = (inTime ? deadline_ : now) + interval_;
  lastBegin_ = now;
  lastSeen_ = seen;
  return seen;
}

void FramePacer::rest() {
  lastBegin_.reset();
  earlyInARow_ = 0;
}

void FramePacer::notePeriod(Nanoseconds period) {
  if (usesDeadlines()) return;
  earlyInARow_ = period < interval_ * 9 / 10 ? earlyInARow_ + 1 : 0;
}

}  // namespace lumivane

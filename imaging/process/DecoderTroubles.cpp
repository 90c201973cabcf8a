#include "imaging/process/DecoderTroubles.h"

#include <algorithm>

namespace lumivane {

void DecoderTroubles::noteDeath(const std::string& path, MediaTime now) {
  lastDeath_ = now;
  ++deathsInARow_;
  const bool known = deathsOfPicture_.contains(path);
  if (path.empty() || (!known && deathsOfPicture_.size() >= kMostPaths)) return;
  ++deathsOfPicture_[path];
}

bool DecoderTroubles::isDeadly(const std::string& path) const {
  const auto found = deathsOfPicture_.find(path);
  return found != deathsOfPicture_.end() && found->second >= kMostDeathsOfPicture;
}

Nanoseconds DecoderTroubles::waitBeforeStart(MediaTime now) const {
  if (deathsInARow_ < kDeathsBeforeWaiting) return Nanoseconds{0};
  constexpr int kMostDoublings = 20;
  const int doublings = std::min(deathsInARow_ - kDeathsBeforeWaiting, kMostDoublings);
  const Nanoseconds wait = std::min(kFirstWait * (1 << doublings), kLongestWait);
  return lastDeath_ + wait - now;
}

}  // namespace lumivane

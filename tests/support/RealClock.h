// The machine's own steady clock, for tests that measure or that run real threads.
#pragma once

#include "platform/Clock.h"

namespace lumivane {

class RealClock final : public Clock {
 public:
  [[nodiscard]] MediaTime now() const override {
    return MediaTime(
        std::chrono::duration_cast<Nanoseconds>(std::chrono::steady_clock::now().time_since_epoch()));
  }
  [[nodiscard]] WallTime wallTime() const override { return std::chrono::system_clock::now(); }
};

}  // namespace lumivane

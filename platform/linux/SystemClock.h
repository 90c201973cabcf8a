// The machine's clocks.
//
// Threads: any.
// Units:   media time is the time since the machine was started, time in suspend included.
// Errors:  none.
#pragma once

#include "platform/Clock.h"

namespace lumivane {

// Holds up the calling thread; never the main one.
void holdUp(Nanoseconds span);

class SystemClock final : public Clock {
 public:
  [[nodiscard]] MediaTime now() const override;
  [[nodiscard]] WallTime wallTime() const override;
};

}  // namespace lumivane

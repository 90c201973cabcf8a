// How long a cross-dissolve takes.
//
// Threads: any; pure.
// Units:   seconds.
// Errors:  none.
#pragma once

#include "platform/Clock.h"

namespace lumivane {

// Steps through the history and rebuilds after a resize answer the user: they fade just long enough not to flash.
inline constexpr Seconds kQuickFade{0.15};
// The old picture is gone this much before the new one is fully there.
inline constexpr Seconds kFadeOutLead{0.05};

// The fade for a slider value between `shortest` and `longest`. The square gives fine control of short fades. A slider
// without a length has one value.
[[nodiscard]] constexpr Seconds fadeLength(double shortest, double longest, double sliderValue) {
  if (!(longest > shortest)) return Seconds{shortest};
  const double part = (sliderValue - shortest) / (longest - shortest);
  return Seconds{shortest + (longest - shortest) * part * part};
}

}  // namespace lumivane

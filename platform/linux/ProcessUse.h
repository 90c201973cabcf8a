// What the system knows of this process: when it began, and the most memory that it had.
//
// Threads: any.
// Units:   media time of SystemClock, to the system's tick (10 ms on most); bytes.
// Errors:  the epoch, and 0 bytes, where the system does not say.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Clock.h"

namespace lumivane {

[[nodiscard]] MediaTime processStart();
[[nodiscard]] std::size_t peakMemoryBytes();

// From the content of /proc/<process>/stat, as proc(5) describes it; exposed for its tests.
[[nodiscard]] MediaTime startToldBy(std::string_view stat, long ticksPerSecond);

}  // namespace lumivane

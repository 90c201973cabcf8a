// What the system knows of a process: when it began, and the most memory that it had.
//
// Threads: any.
// Units:   media time of SystemClock, to the system's tick (10 ms on most); bytes that were resident at once, those shared
//          with other processes included.
// Errors:  the epoch, and 0 bytes, where the system does not say.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string_view>

#include "platform/Clock.h"

namespace lumivane {

[[nodiscard]] MediaTime processStart();
[[nodiscard]] std::size_t peakMemoryBytes();
// Of another process. One that has ended has no memory any more: 0.
[[nodiscard]] std::size_t peakMemoryBytesOf(pid_t process);

// From the content of /proc/<process>/stat, as proc(5) describes it; exposed for its tests.
[[nodiscard]] MediaTime startToldBy(std::string_view stat, long ticksPerSecond);
// From the content of /proc/<process>/status.
[[nodiscard]] std::size_t peakMemoryToldBy(std::string_view status);

}  // namespace lumivane

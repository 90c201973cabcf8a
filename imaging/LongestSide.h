// How large a picture may be decoded where memory is short: better a less sharp picture than the end of the program.
//
// Threads: any; a pure function.
// Units:   MiB; pixels of the longer side.
// Errors:  none.
#pragma once

#include <cstdint>

namespace lumivane {

// Less than this is scarce.
inline constexpr std::int64_t kScarceMemoryMB = 1536;

// With enough memory the largest that is ever decoded; else a side with which a picture, its smaller levels and its
// copy for drawing take an eighth of what is left. Never less than an ordinary screen is wide.
[[nodiscard]] int longestSideFor(std::int64_t freeMemoryMB);

}  // namespace lumivane

// A date as one line of text, the way the log and the files for the launcher hold it.
//
// Threads: any; pure.
// Errors:  none.
#pragma once

#include <string>

#include "platform/Clock.h"

namespace lumivane {

// Year-month-day, hours:minutes:seconds and the offset from UTC, which is always zero: "2026-11-21 14:24:05 +0000".
[[nodiscard]] std::string dateText(WallTime date);

}  // namespace lumivane

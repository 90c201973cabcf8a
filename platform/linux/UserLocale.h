// The language that the environment asks for.
//
// Threads: any; a pure function.
// Errors:  none.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/Environment.h"

namespace lumivane {

// For one of the system's categories ("LC_MESSAGES", "LC_COLLATE"), as ICU names it ("de_DE"); empty where the
// environment names none, or only "C" or "POSIX".
[[nodiscard]] std::string userLocale(const Environment& environment, std::string_view category);

}  // namespace lumivane

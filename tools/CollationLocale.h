// The language whose order file names are sorted in, as the environment asks for it.
//
// Threads: any; a pure function.
// Errors:  none.
#pragma once

#include <string>

#include "platform/linux/Environment.h"

namespace lumivane {

// As ICU names it ("de_DE"); empty where the environment names none, or only "C" or "POSIX".
[[nodiscard]] std::string collationLocale(const Environment& environment);

}  // namespace lumivane

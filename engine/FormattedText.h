// Text made by the rules of printf, as a string of its own.
//
// Threads: any.
// Errors:  an impossible format gives empty text; the compiler checks formats and arguments.
#pragma once

#include <string>

namespace lumivane {

[[nodiscard, gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

}  // namespace lumivane

// Makes text out of the bytes that picture files hold as text.
//
// Threads: any; pure functions.
// Errors:  none; the result is always valid UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace lumivane {

// Up to the first NUL. UTF-8 stays; whatever is not valid UTF-8 is taken as Latin-1, the usual charset of files
// that do not say which one they use.
[[nodiscard]] std::string storedText(std::string_view bytes);

}  // namespace lumivane

// Turns a display's name into a part of a file name, so that everything kept for a display can be filed under it.
//
// Threads: any; a pure function.
// Units:   bytes.
// Errors:  none; every name has a token, and no two names share one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lumivane {

// File names may have 255 bytes, and a token gets a prefix and a suffix.
inline constexpr std::size_t kLongestFileNameToken = 180;

// The name itself where that is safe. "%", "/", control characters, a leading dot and bytes that are no text are
// written as %XX. A long name is cut and told apart by the checksum of the whole. Never empty, "." or "..".
[[nodiscard]] std::string fileNameToken(std::string_view name);

}  // namespace lumivane

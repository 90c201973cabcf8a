// Makes text from outside (file names, monitor names) safe to show in a log line or on a terminal.
//
// Threads: any; pure functions.
// Errors:  none.
#pragma once

#include <string>
#include <string_view>

namespace lumivane {

// True when the bytes are well-formed UTF-8 (no surrogates, no overlong forms, nothing above U+10FFFF).
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

// The same text with every control character (C0, DEL, C1), every bidirectional override (U+202A..U+202E,
// U+2066..U+2069), line and paragraph separators, and every byte that is not part of valid UTF-8 written
// as \xNN, byte by byte. Backslashes stay as they are: the result is for reading, not for parsing back.
[[nodiscard]] std::string printable(std::string_view bytes);

// The same bytes as ASCII, each byte above 127 replaced by "?".
[[nodiscard]] std::string lossyAscii(std::string_view bytes);

}  // namespace lumivane

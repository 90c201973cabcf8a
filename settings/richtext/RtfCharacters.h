// The characters of RTF's two eight-bit worlds, as UTF-8.
//
// Threads: any; pure functions.
// Errors:  none; what is no character is U+FFFD.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lumivane {

void appendUtf8(std::string& text, std::uint32_t codePoint);

// The character of a byte in Windows code page 1252.
[[nodiscard]] std::uint32_t fromCodePage1252(unsigned char byte);

// The character that a control word or a control symbol (\~ and its like) stands for; 0 = it stands for none.
[[nodiscard]] std::uint32_t namedCharacter(std::string_view word);
[[nodiscard]] std::uint32_t symbolCharacter(char symbol);

}  // namespace lumivane

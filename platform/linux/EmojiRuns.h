// Finds the emoji in a text: what is to be set in a coloured font although other fonts have it in black and white.
//
// Threads: any; a pure function.
// Units:   UTF-16 code units.
// Errors:  none.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace lumivane {

// Follows a character that is to be shown as emoji.
inline constexpr char16_t kAsEmoji = 0xFE0F;

struct TextRun {
  std::size_t start = 0;
  std::size_t length = 0;
  bool operator==(const TextRun&) const = default;
};

// Each run is one or more whole emoji: with their skin colour, joined to families, flags, keycaps. What is text unless
// said otherwise, such as digits and the heart of playing cards, counts only where the text says so.
[[nodiscard]] std::vector<TextRun> emojiRuns(std::u16string_view text);

}  // namespace lumivane

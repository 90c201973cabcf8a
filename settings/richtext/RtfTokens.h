// Takes the bytes of an RTF document apart: groups, control words, control symbols, characters.
//
// After Microsoft's Rich Text Format specification, version 1.9.1, as far as the syntax goes.
//
// Threads: one at a time.
// Owns:    nothing; the bytes must outlive it.
// Errors:  next() fails for a control word longer than any, \bin beyond the end and \' without two digits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Result.h"

namespace lumivane {

struct RtfToken {
  enum class Kind { GroupBegins, GroupEnds, Word, Symbol, Byte, End };
  Kind kind = Kind::End;
  std::string_view word;                  // Word: its letters
  std::optional<std::int32_t> parameter;  // Word: the number behind it, brought into range
  unsigned char byte = 0;  // Symbol: the character behind the backslash. Byte: in the document's code page
};

// What a hexadecimal digit counts; -1 for any other character.
[[nodiscard]] int hexDigit(char c);

class RtfTokens {
 public:
  explicit RtfTokens(std::string_view bytes) : bytes_(bytes) {}

  // Line breaks and zero bytes are left out; the bytes behind \bin are passed over.
  [[nodiscard]] Result<RtfToken> next();

 private:
  [[nodiscard]] Result<RtfToken> control();
  [[nodiscard]] Result<RtfToken> hexadecimal();
  [[nodiscard]] std::optional<std::int32_t> number();
  [[nodiscard]] bool ended() const { return at_ >= bytes_.size(); }

  std::string_view bytes_;
  std::size_t at_ = 0;
};

}  // namespace lumivane

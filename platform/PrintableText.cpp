#include "platform/PrintableText.h"

#include <cstddef>
#include <cstdint>

namespace lumivane {
namespace {

struct DecodedCharacter {
  char32_t code = 0;
  std::size_t bytes = 0;  // 0 = not valid UTF-8 at this place
};

// Decodes the character at the start of `bytes` (which is not empty), by the table of RFC 3629.
DecodedCharacter decodeFirst(std::string_view bytes) {
  const auto byteAt = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const std::uint8_t lead = byteAt(0);
  if (lead < 0x80) return {lead, 1};
  std::size_t length = 0;
  char32_t code = 0;
  char32_t smallest = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2, code = lead & 0x1FU, smallest = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3, code = lead & 0x0FU, smallest = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4, code = lead & 0x07U, smallest = 0x10000;
  } else {
    return {};
  }
  if (bytes.size() < length) return {};
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xC0U) != 0x80U) return {};
    code = (code << 6) | (byteAt(i) & 0x3FU);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < smallest || code > 0x10FFFF || surrogate) return {};
  return {code, length};
}

bool isHarmless(char32_t code) {
  const bool control = code < 0x20 || (code >= 0x7F && code <= 0x9F);
  const bool reordering = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
  const bool separator = code == 0x2028 || code == 0x2029;
  return !control && !reordering && !separator;
}

void appendEscaped(std::string& text, std::string_view bytes) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  for (const char c : bytes) {
    const auto byte = static_cast<std::uint8_t>(c);
    text += "\\x";
    text += kHexDigits[byte >> 4];
    text += kHexDigits[byte & 0x0FU];
  }
}

}  // namespace

bool isValidUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const DecodedCharacter character = decodeFirst(bytes);
    if (character.bytes == 0) return false;
    bytes.remove_prefix(character.bytes);
  }
  return true;
}

std::string printable(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const DecodedCharacter character = decodeFirst(bytes);
    if (character.bytes != 0 && isHarmless(character.code)) {
      text.append(bytes.substr(0, character.bytes));
    } else {
      appendEscaped(text, bytes.substr(0, character.bytes == 0 ? 1 : character.bytes));
    }
    bytes.remove_prefix(character.bytes == 0 ? 1 : character.bytes);
  }
  return text;
}

std::string lossyAscii(std::string_view bytes) {
  std::string text(bytes);
  for (char& c : text) {
    if (static_cast<std::uint8_t>(c) > 127) c = '?';
  }
  return text;
}

}  // namespace lumivane

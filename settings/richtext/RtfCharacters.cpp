#include "settings/richtext/RtfCharacters.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumivane {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

// 0x80 to 0x9F; the rest of the code page is Latin-1.
constexpr std::array<std::uint16_t, 32> kUpperControls{
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

constexpr std::pair<std::string_view, std::uint32_t> kNamed[] = {
    {"tab", u'\t'},        {"line", 0x2028},   {"emdash", 0x2014}, {"endash", 0x2013}, {"emspace", 0x2003},
    {"enspace", 0x2002},   {"bullet", 0x2022}, {"lquote", 0x2018}, {"rquote", 0x2019}, {"ldblquote", 0x201C},
    {"rdblquote", 0x201D}, {"zwj", 0x200D},    {"zwnj", 0x200C}};

char byteOf(std::uint32_t value) {
  return static_cast<char>(static_cast<unsigned char>(value));
}

}  // namespace

void appendUtf8(std::string& text, std::uint32_t codePoint) {
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (surrogate || codePoint > 0x10FFFF) codePoint = kReplacement;
  if (codePoint < 0x80) {
    text += byteOf(codePoint);
  } else if (codePoint < 0x800) {
    text += byteOf(0xC0 | (codePoint >> 6));
    text += byteOf(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    text += byteOf(0xE0 | (codePoint >> 12));
    text += byteOf(0x80 | ((codePoint >> 6) & 0x3F));
    text += byteOf(0x80 | (codePoint & 0x3F));
  } else {
    text += byteOf(0xF0 | (codePoint >> 18));
    text += byteOf(0x80 | ((codePoint >> 12) & 0x3F));
    text += byteOf(0x80 | ((codePoint >> 6) & 0x3F));
    text += byteOf(0x80 | (codePoint & 0x3F));
  }
}

std::uint32_t fromCodePage1252(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kUpperControls[byte - 0x80U] : byte;
}

std::uint32_t namedCharacter(std::string_view word) {
  const auto* found = std::ranges::find(kNamed, word, &std::pair<std::string_view, std::uint32_t>::first);
  return found == std::end(kNamed) ? 0 : found->second;
}

std::uint32_t symbolCharacter(char symbol) {
  switch (symbol) {
    case '\\':
    case '{':
    case '}':
      return static_cast<unsigned char>(symbol);
    case '~':
      return 0xA0;  // non-breaking space
    case '-':
      return 0xAD;  // where a word may be broken
    case '_':
      return 0x2011;  // non-breaking hyphen
    default:
      return 0;
  }
}

}  // namespace lumivane

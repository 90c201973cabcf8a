#include "settings/DisplayFileName.h"

#include <glib.h>

#include <cstdint>
#include <memory>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

// No escaped name contains these: after its "%" stand two hexadecimal digits, and "s" and "e" with "m" are none.
constexpr std::string_view kEmptyName = "%empty";
constexpr std::string_view kChecksumMark = "%sha256-";
constexpr std::size_t kChecksumDigits = 64;
constexpr std::size_t kLongestHead = 100;
static_assert(kLongestHead + kChecksumMark.size() + kChecksumDigits <= kLongestFileNameToken);

// The length of the character at the start of the text, or 1 for a byte that is none.
std::size_t characterBytes(std::string_view text) {
  for (std::size_t length = 1; length <= 4 && length <= text.size(); ++length) {
    if (isValidUtf8(text.substr(0, length))) return length;
  }
  return 1;
}

bool isSafe(std::string_view character) {
  return character != "%" && character != "/" && printable(character) == character;
}

void appendEscaped(std::string& token, std::string_view bytes) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  for (const char c : bytes) {
    const auto byte = static_cast<std::uint8_t>(c);
    token += '%';
    token += kHexDigits[byte >> 4];
    token += kHexDigits[byte & 0x0FU];
  }
}

struct Escaped {
  std::string text;
  std::size_t headBytes = 0;  // how much of the text is left when it is cut, between two characters
};

Escaped escaped(std::string_view name) {
  Escaped result;
  while (!name.empty()) {
    const std::string_view character = name.substr(0, characterBytes(name));
    const bool leadingDot = result.text.empty() && character == ".";
    if (isSafe(character) && !leadingDot) {
      result.text += character;
    } else {
      appendEscaped(result.text, character);
    }
    if (result.text.size() <= kLongestHead) result.headBytes = result.text.size();
    name.remove_prefix(character.size());
  }
  return result;
}

std::string checksum(std::string_view bytes) {
  const std::unique_ptr<gchar, decltype(&g_free)> digits(
      g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(bytes.data()),
                                  bytes.size()),
      &g_free);
  return digits.get();
}

}  // namespace

std::string fileNameToken(std::string_view name) {
  if (name.empty()) return std::string(kEmptyName);
  const Escaped whole = escaped(name);
  if (whole.text.size() <= kLongestFileNameToken) return whole.text;
  return whole.text.substr(0, whole.headBytes) + std::string(kChecksumMark) + checksum(name);
}

}  // namespace lumivane

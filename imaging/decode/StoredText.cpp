#include "imaging/decode/StoredText.h"

#include "platform/PrintableText.h"

namespace lumivane {

std::string storedText(std::string_view bytes) {
  const std::string_view text = bytes.substr(0, bytes.find('\0'));
  if (isValidUtf8(text)) return std::string(text);
  std::string utf8;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | code >> 6);
      utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return utf8;
}

}  // namespace lumivane

#include "platform/Edid.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lumivane {
namespace {

constexpr std::size_t kBlockBytes = 128;
constexpr std::string_view kHeader("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00", 8);
constexpr std::size_t kVendorAt = 8;
constexpr std::size_t kProductAt = 10;
constexpr std::size_t kSerialAt = 12;

// Four descriptors: either a timing, or two zero bytes, a zero, a type, a zero, and 13 bytes of text.
constexpr std::array<std::size_t, 4> kDescriptorsAt{54, 72, 90, 108};
constexpr std::string_view kNameMark("\x00\x00\x00\xFC\x00", 5);
constexpr std::size_t kNameBytes = 13;

std::uint32_t littleEndian(std::string_view bytes, std::size_t at, std::size_t width) {
  std::uint32_t value = 0;
  for (std::size_t i = width; i > 0; --i) value = (value << 8) | static_cast<std::uint8_t>(bytes[at + i - 1]);
  return value;
}

bool sumsUpToZero(std::string_view block) {
  std::uint8_t sum = 0;
  for (const char c : block) sum = static_cast<std::uint8_t>(sum + static_cast<std::uint8_t>(c));
  return sum == 0;
}

// Text ends with a line feed and is filled up with blanks; what cannot be printed becomes "?".
std::optional<std::string> nameIn(std::string_view field) {
  field = field.substr(0, field.find_first_of(std::string_view("\n\0", 2)));
  std::string name(field);
  for (char& c : name) {
    if (c < ' ' || c > '~') c = '?';
  }
  const std::size_t first = name.find_first_not_of(' ');
  if (first == std::string::npos) return std::nullopt;
  return name.substr(first, name.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::optional<Edid> parseEdid(std::string_view bytes) {
  if (bytes.size() < kBlockBytes || !bytes.starts_with(kHeader)) return std::nullopt;
  const std::string_view block = bytes.substr(0, kBlockBytes);
  if (!sumsUpToZero(block)) return std::nullopt;
  Edid edid;
  const auto upper = static_cast<std::uint8_t>(block[kVendorAt]);
  const auto lower = static_cast<std::uint8_t>(block[kVendorAt + 1]);
  edid.vendor = static_cast<std::uint16_t>(upper << 8 | lower);
  edid.product = static_cast<std::uint16_t>(littleEndian(block, kProductAt, 2));
  edid.serial = littleEndian(block, kSerialAt, 4);
  for (const std::size_t at : kDescriptorsAt) {
    const std::string_view descriptor = block.substr(at, kNameMark.size() + kNameBytes);
    if (!edid.name && descriptor.starts_with(kNameMark))
      edid.name = nameIn(descriptor.substr(kNameMark.size()));
  }
  return edid;
}

}  // namespace lumivane

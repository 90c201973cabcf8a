// Reads the block of 128 bytes by which a monitor identifies itself (VESA E-EDID 1.x).
//
// Threads: any; a pure function.
// Errors:  absent when the bytes are no such block: they come from whatever is plugged in.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumivane {

struct Edid {
  std::uint16_t vendor = 0;  // three letters of five bits each, the first uppermost
  std::uint16_t product = 0;
  std::uint32_t serial = 0;         // 0 = none
  std::optional<std::string> name;  // printable ASCII, never empty
};

[[nodiscard]] std::optional<Edid> parseEdid(std::string_view bytes);

}  // namespace lumivane

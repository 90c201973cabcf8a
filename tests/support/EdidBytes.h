// Builds the block by which a monitor identifies itself.
#pragma once

#include <cstdint>
#include <string>

namespace lumivane {

struct EdidContent {
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::uint32_t serial = 0;
  std::string name;  // up to 13 bytes as they stand in the field; empty = no name
};

inline void setEdidSum(std::string& block) {
  std::uint8_t sum = 0;
  for (std::size_t i = 0; i < 127; ++i)
    sum = static_cast<std::uint8_t>(sum + static_cast<std::uint8_t>(block[i]));
  block[127] = static_cast<char>(-sum);
}

[[nodiscard]] inline std::string edidBytes(const EdidContent& content) {
  std::string block(128, '\0');
  block.replace(0, 8, std::string("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00", 8));
  block[8] = static_cast<char>(content.vendor >> 8);
  block[9] = static_cast<char>(content.vendor);
  for (std::size_t i = 0; i < 2; ++i) block[10 + i] = static_cast<char>(content.product >> (8 * i));
  for (std::size_t i = 0; i < 4; ++i) block[12 + i] = static_cast<char>(content.serial >> (8 * i));
  if (!content.name.empty()) {
    block.replace(72, 5, std::string("\x00\x00\x00\xFC\x00", 5));
    block.replace(77, content.name.size(), content.name);
  }
  setEdidSum(block);
  return block;
}

}  // namespace lumivane

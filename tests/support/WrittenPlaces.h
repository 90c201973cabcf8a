// Writes small files of places as PlacesFormat.h describes them, apart from the program and from the script.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumivane {

struct WrittenPlace {
  double latitude = 0;
  double longitude = 0;
  std::string name;
  std::string countryCode;
};

// The content of a file. Requires: at least one place; names of at most 255 bytes.
[[nodiscard]] std::string writtenPlaces(std::vector<WrittenPlace> places);

// The content with another number at an offset, and with the checksum that it then needs.
[[nodiscard]] std::string withNumberAt(std::string content, std::size_t offset, std::uint32_t number);
[[nodiscard]] std::string withRightChecksum(std::string content);

}  // namespace lumivane

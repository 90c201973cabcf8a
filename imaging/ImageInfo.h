// What the show wants to know of a picture, read from its property dictionary by the show's own rules.
//
// Threads: any; pure functions of their arguments.
// Units:   pixels as stored, before orientation is applied; degrees.
// Errors:  none; what is missing keeps the value it has in a new ImageInfo.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "imaging/PropertyDictionary.h"

namespace lumivane {

struct ImageInfo {
  std::int32_t width = 0;        // 0 = unknown
  std::int32_t height = 0;       // 0 = unknown
  std::int32_t orientation = 1;  // 1..8; 5 and more: seen with width and height swapped
  double latitude = 0;           // south is negative; 0 and 0 = unknown
  double longitude = 0;          // west is negative
  std::optional<std::string> keywords;
  std::optional<std::string> caption;
  std::optional<std::string> date;  // as stored
};

// Size and orientation only; nothing else is looked at.
[[nodiscard]] ImageInfo getImageSizeFrom(const PropertyDictionary& properties);

// Everything. `filename` serves one purpose: with `displayFilename` an object name that repeats the file's name
// (without folder and extension) is left out of the caption, because the name is on the screen already.
[[nodiscard]] ImageInfo getImageInfosFrom(std::string_view filename, const PropertyDictionary& properties,
                                          bool displayFilename);

}  // namespace lumivane

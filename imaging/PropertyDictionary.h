// The metadata of a picture as its decoder read it: plain data, nothing interpreted yet.
//
// Threads: a value.
// Units:   pixels as stored (before orientation); degrees without sign as the file holds them.
// Errors:  what is absent from the file, or unreadable, is absent here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lumivane {

struct GpsDictionary {
  std::optional<double> latitude;   // degrees
  std::optional<double> longitude;  // degrees
  std::optional<std::string> latitudeRef;
  std::optional<std::string> longitudeRef;
};

struct IptcDictionary {
  std::optional<std::vector<std::string>> keywords;
  std::optional<std::vector<std::string>> personInImage;
  std::optional<std::string> captionAbstract;
  std::optional<std::string> artworkContentDescription;
  std::optional<std::string> objectName;
};

struct PropertyDictionary {
  std::optional<std::int32_t> pixelWidth;
  std::optional<std::int32_t> pixelHeight;
  std::optional<std::int32_t> orientation;  // as stored, also when it is none of 1..8
  std::optional<GpsDictionary> gps;
  std::optional<IptcDictionary> iptc;
  std::optional<std::string> tiffImageDescription;
  std::optional<std::string> exifDateTimeOriginal;
};

}  // namespace lumivane

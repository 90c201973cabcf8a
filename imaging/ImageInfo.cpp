#include "imaging/ImageInfo.h"

#include <vector>

namespace lumivane {

namespace {

void readPosition(const GpsDictionary& gps, ImageInfo& info) {
  if (gps.latitude) info.latitude = gps.latitudeRef == "S" ? -*gps.latitude : *gps.latitude;
  if (gps.longitude) info.longitude = gps.longitudeRef == "W" ? -*gps.longitude : *gps.longitude;
}

std::string joined(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) {
    if (&item != &items.front()) text += ", ";
    text += item;
  }
  return text;
}

std::optional<std::string> keywordsOf(const IptcDictionary& iptc) {
  const auto& list = iptc.keywords ? iptc.keywords : iptc.personInImage;
  return list ? std::optional(joined(*list)) : std::nullopt;
}

std::optional<std::string> captionOf(const PropertyDictionary& properties) {
  if (properties.iptc) {
    if (properties.iptc->captionAbstract) return properties.iptc->captionAbstract;
    if (properties.iptc->artworkContentDescription) return properties.iptc->artworkContentDescription;
  }
  return properties.tiffImageDescription;
}

// The last component of a path without its extension. A leading dot begins a name, not an extension.
std::string_view baseName(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  const std::string_view name = path.substr(path.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos || dot == 0 || dot + 1 == name.size() ? name : name.substr(0, dot);
}

void addObjectName(const std::string& objectName, std::optional<std::string>& caption) {
  caption = caption ? objectName + ": " + *caption : objectName;
}

}  // namespace

ImageInfo getImageSizeFrom(const PropertyDictionary& properties) {
  ImageInfo info;
  info.width = properties.pixelWidth.value_or(0);
  info.height = properties.pixelHeight.value_or(0);
  info.orientation = properties.orientation.value_or(1);
  if (info.orientation < 1 || info.orientation > 8) info.orientation = 1;
  return info;
}

ImageInfo getImageInfosFrom(std::string_view filename, const PropertyDictionary& properties,
                            bool displayFilename) {
  ImageInfo info = getImageSizeFrom(properties);
  if (properties.gps) readPosition(*properties.gps, info);
  if (properties.iptc) info.keywords = keywordsOf(*properties.iptc);
  info.caption = captionOf(properties);
  if (properties.iptc && properties.iptc->objectName) {
    const std::string& objectName = *properties.iptc->objectName;
    if (!displayFilename || objectName != baseName(filename)) addObjectName(objectName, info.caption);
  }
  info.date = properties.exifDateTimeOriginal;
  return info;
}

}  // namespace lumivane

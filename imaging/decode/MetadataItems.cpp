#include "imaging/decode/MetadataItems.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/decode/StoredText.h"

namespace lumivane {

namespace {

constexpr std::size_t kLongestText = std::size_t{64} << 10;
constexpr std::size_t kMostItems = 1000;

std::string textOf(const Exiv2::Value& value) {
  if (value.typeId() == Exiv2::undefined || value.typeId() == Exiv2::unsignedByte) {
    std::vector<Exiv2::byte> raw(static_cast<std::size_t>(std::max(0L, value.size())));
    value.copy(raw.data(), Exiv2::littleEndian);
    return storedText({reinterpret_cast<const char*>(raw.data()), std::min(raw.size(), kLongestText)});
  }
  return storedText(std::string_view(value.toString()).substr(0, kLongestText));
}

std::optional<std::string> exifText(Exiv2::ExifData& exif, const char* key) {
  const auto found = exif.findKey(Exiv2::ExifKey(key));
  if (found == exif.end() || found->count() == 0) return std::nullopt;
  return textOf(found->value());
}

// Some programs write the three numbers as text, separated in ways of their own.
std::optional<double> degreesFromText(const std::string& text) {
  double degrees = 0;
  double unit = 1;
  const char* at = text.c_str();
  int parts = 0;
  for (; parts < 3; ++parts, unit /= 60) {
    while (*at == ' ' || *at == ',' || *at == ';' || *at == ':') ++at;
    char* after = nullptr;
    const double part = std::strtod(at, &after);
    if (after == at) break;
    degrees += part * unit;
    at = after;
  }
  return parts > 0 ? std::optional(degrees) : std::nullopt;
}

// One number of a list; nothing when it is divided by 0.
std::optional<double> quotient(const Exiv2::Value& value, long i) {
  // Asked for as signed numbers, large unsigned ones would turn negative.
  if (const auto* list = dynamic_cast<const Exiv2::URationalValue*>(&value)) {
    const auto [above, below] = list->value_[static_cast<std::size_t>(i)];
    return below == 0 ? std::nullopt : std::optional(static_cast<double>(above) / below);
  }
  const auto [above, below] = value.toRational(i);
  return below == 0 ? std::nullopt : std::optional(static_cast<double>(above) / below);
}

// Degrees, minutes, seconds; the later ones may be missing.
std::optional<double> degreesFromNumbers(const Exiv2::Value& value) {
  std::optional<double> degrees = quotient(value, 0);
  double unit = 1;
  for (long i = 1; degrees && i < std::min(3L, value.count()); ++i) {
    unit /= 60;
    *degrees += quotient(value, i).value_or(0) * unit;
  }
  return degrees;
}

std::optional<double> exifDegrees(Exiv2::ExifData& exif, const char* key, double most) {
  const auto found = exif.findKey(Exiv2::ExifKey(key));
  if (found == exif.end() || found->count() == 0) return std::nullopt;
  const auto degrees = found->typeId() == Exiv2::asciiString ? degreesFromText(found->toString())
                                                             : degreesFromNumbers(found->value());
  if (!degrees || !std::isfinite(*degrees) || std::abs(*degrees) > most) return std::nullopt;
  return degrees;
}

std::optional<GpsDictionary> gpsOf(Exiv2::ExifData& exif) {
  GpsDictionary gps;
  gps.latitude = exifDegrees(exif, "Exif.GPSInfo.GPSLatitude", 90);
  gps.longitude = exifDegrees(exif, "Exif.GPSInfo.GPSLongitude", 180);
  gps.latitudeRef = exifText(exif, "Exif.GPSInfo.GPSLatitudeRef");
  gps.longitudeRef = exifText(exif, "Exif.GPSInfo.GPSLongitudeRef");
  if (!gps.latitude && !gps.longitude && !gps.latitudeRef && !gps.longitudeRef) return std::nullopt;
  return gps;
}

std::optional<std::int32_t> orientationOf(Exiv2::ExifData& exif, Exiv2::XmpData& xmp) {
  const auto stored = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
  if (stored != exif.end() && stored->count() > 0) {
    return static_cast<std::int32_t>(std::clamp(stored->toLong(0), 0L, 65535L));
  }
  const auto inXmp = xmp.findKey(Exiv2::XmpKey("Xmp.tiff.Orientation"));
  if (inXmp != xmp.end() && inXmp->count() > 0) {
    return static_cast<std::int32_t>(std::clamp(inXmp->toLong(0), 0L, 65535L));
  }
  return std::nullopt;
}

// The values of one dataset of the application record. An empty one counts as absent.
std::vector<std::string> iptcTexts(const Exiv2::IptcData& iptc, std::uint16_t dataset) {
  std::vector<std::string> texts;
  for (const Exiv2::Iptcdatum& datum : iptc) {
    if (datum.record() != Exiv2::IptcDataSets::application2 || datum.tag() != dataset) continue;
    if (texts.size() == kMostItems) break;
    std::string text = storedText(std::string_view(datum.toString()).substr(0, kLongestText));
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

std::optional<std::string> firstOf(std::vector<std::string> texts) {
  if (texts.empty()) return std::nullopt;
  return std::move(texts.front());
}

std::vector<std::string> xmpList(Exiv2::XmpData& xmp, const char* key) {
  const auto found = xmp.findKey(Exiv2::XmpKey(key));
  std::vector<std::string> texts;
  if (found == xmp.end()) return texts;
  const long count = std::min(found->count(), static_cast<long>(kMostItems));
  for (long i = 0; i < count; ++i) {
    std::string text = storedText(found->toString(i).substr(0, kLongestText));
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

// The description of the first artwork or object shown. Its key contains the position in the list.
std::optional<std::string> artworkDescription(const Exiv2::XmpData& xmp) {
  for (const Exiv2::Xmpdatum& datum : xmp) {
    const std::string key = datum.key();
    if (!key.starts_with("Xmp.iptcExt.ArtworkOrObject") || !key.ends_with("AOContentDescription")) continue;
    if (datum.count() == 0) continue;
    std::string text = storedText(datum.toString(0).substr(0, kLongestText));
    if (!text.empty()) return text;
  }
  return std::nullopt;
}

std::optional<IptcDictionary> iptcOf(const Exiv2::IptcData& iptc, Exiv2::XmpData& xmp) {
  IptcDictionary dictionary;
  if (auto keywords = iptcTexts(iptc, Exiv2::IptcDataSets::Keywords); !keywords.empty())
    dictionary.keywords = keywords;
  if (auto persons = xmpList(xmp, "Xmp.iptcExt.PersonInImage"); !persons.empty())
    dictionary.personInImage = persons;
  dictionary.captionAbstract = firstOf(iptcTexts(iptc, Exiv2::IptcDataSets::Caption));
  dictionary.artworkContentDescription = artworkDescription(xmp);
  dictionary.objectName = firstOf(iptcTexts(iptc, Exiv2::IptcDataSets::ObjectName));
  const bool anything = dictionary.keywords || dictionary.personInImage || dictionary.captionAbstract ||
                        dictionary.artworkContentDescription || dictionary.objectName;
  return anything ? std::optional(dictionary) : std::nullopt;
}

}  // namespace

PropertyDictionary metadataItems(Exiv2::ExifData& exif, Exiv2::IptcData& iptc, Exiv2::XmpData& xmp) {
  PropertyDictionary properties;
  properties.orientation = orientationOf(exif, xmp);
  properties.gps = gpsOf(exif);
  properties.iptc = iptcOf(iptc, xmp);
  properties.tiffImageDescription = exifText(exif, "Exif.Image.ImageDescription");
  properties.exifDateTimeOriginal = exifText(exif, "Exif.Photo.DateTimeOriginal");
  return properties;
}

}  // namespace lumivane

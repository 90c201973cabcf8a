#include "tools/InspectedPicture.h"

#include <array>
#include <charconv>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

using Json = nlohmann::ordered_json;

// The verdict is the last thing that the loader had to say.
std::optional<std::string> reasonIn(const LoadOutcome& outcome) {
  std::optional<std::string> reason;
  for (const LoadMessage& message : outcome.messages) {
    if (message.kind != LoadMessage::Kind::FileAccessError) reason = message.text + message.with;
  }
  return reason;
}

// Of a picture that is refused, the file can still tell what it holds.
std::optional<PropertyDictionary> propertiesOf(ImageSource& source) {
  if (source.status() != ImageSourceStatus::Complete) return std::nullopt;
  return source.properties();
}

Json orNull(const std::optional<std::string>& text) {
  return text ? Json(*text) : Json(nullptr);
}

std::string degrees(double value) {
  std::array<char, 64> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() ? std::string(text.data(), end) : std::string("?");
}

std::string sizeText(int width, int height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

std::optional<std::string> placeOf(const ImageInfo& info, const PlaceLookup& placeAt) {
  if (info.latitude == 0 && info.longitude == 0) return std::nullopt;
  const Result<Placemark> place = placeAt(info.latitude, info.longitude);
  return place ? std::optional(placeName(place.value())) : std::nullopt;
}

// The show knows pictures by their absolute paths.
std::string absolutePath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return error ? path : absolute.lexically_normal().string();
}

// As the show has them once the place is known.
std::vector<std::string> linesFor(const InspectedPicture& picture, const InspectRules& rules) {
  const std::string path = absolutePath(picture.path);
  std::vector<std::string> lines{shownFilename(path, rules.filename)};
  if (!rules.showImageInfo || !picture.info) return lines;
  const ImageInfo& info = *picture.info;
  std::optional<std::string> place = picture.place;
  if (!place && (info.latitude != 0 || info.longitude != 0))
    place = coordinatesText(info.latitude, info.longitude);
  const std::string line = informationLine(imageDescription(path, info.caption, info.keywords), place,
                                           info.date ? std::optional(trimmed(*info.date)) : std::nullopt);
  if (!line.empty()) lines.push_back(line);
  return lines;
}

void addLine(std::string& block, std::string_view label, const std::string& value) {
  constexpr std::size_t kColumn = 14;
  block += "  " + std::string(label) + std::string(kColumn - label.size(), ' ') + printable(value) + "\n";
}

}  // namespace

InspectedPicture inspectPicture(ImageDecoder& decoder, const std::string& path, const InspectRules& rules,
                                const PlaceLookup& placeAt) {
  InspectedPicture picture;
  picture.path = path;
  const LoadOutcome outcome = loadPicture(decoder, path, {rules.excludeSize, path});
  std::optional<PropertyDictionary> properties;
  if (outcome.picture) {
    picture.image = outcome.picture->image;
    properties = outcome.picture->properties;
  } else {
    picture.reason = reasonIn(outcome);
    const std::unique_ptr<ImageSource> source = decoder.open(path);
    picture.couldBeOpened = source != nullptr;
    if (source) properties = propertiesOf(*source);
  }
  if (!properties) return picture;
  picture.info = getImageInfosFrom(path, *properties, rules.filename.displayFilename);
  picture.hasPosition = properties->gps && properties->gps->latitude && properties->gps->longitude;
  picture.place = placeOf(*picture.info, placeAt);
  if (picture.accepted()) picture.infoLines = linesFor(picture, rules);
  return picture;
}

std::string jsonLine(const InspectedPicture& picture) {
  const ImageInfo info = picture.info.value_or(ImageInfo{});
  const bool known = picture.info.has_value();
  const auto ifKnown = [&](auto value) { return known ? Json(value) : Json(nullptr); };
  const auto ifPlaced = [&](double value) { return picture.hasPosition ? Json(value) : Json(nullptr); };
  const auto ifAccepted = [&](int SizePx::*side) {
    return picture.accepted() ? Json(picture.image->displaySize().*side) : Json(nullptr);
  };
  Json object;
  object["path"] = isValidUtf8(picture.path) ? picture.path : printable(picture.path);
  object["accepted"] = picture.accepted();
  object["reason"] = orNull(picture.reason);
  object["width"] = ifKnown(info.width);
  object["height"] = ifKnown(info.height);
  object["orientation"] = ifKnown(info.orientation);
  object["latitude"] = ifPlaced(info.latitude);
  object["longitude"] = ifPlaced(info.longitude);
  object["place"] = orNull(picture.place);
  object["keywords"] = orNull(info.keywords);
  object["caption"] = orNull(info.caption);
  object["date"] = orNull(info.date);
  object["infoLines"] = picture.infoLines;
  object["decodedWidth"] = ifAccepted(&SizePx::width);
  object["decodedHeight"] = ifAccepted(&SizePx::height);
  return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string readableBlock(const InspectedPicture& picture) {
  std::string block = printable(picture.path) + "\n";
  std::string reason = picture.reason.value_or("");
  while (reason.ends_with('\n')) reason.pop_back();
  addLine(block, picture.accepted() ? "shown" : "not shown", picture.accepted() ? "yes" : reason);
  if (picture.info) {
    const ImageInfo& info = *picture.info;
    addLine(block, "size", sizeText(info.width, info.height));
    addLine(block, "orientation", std::to_string(info.orientation));
    if (picture.hasPosition)
      addLine(block, "position", degrees(info.latitude) + ", " + degrees(info.longitude));
    if (picture.place) addLine(block, "place", *picture.place);
    if (info.keywords) addLine(block, "keywords", *info.keywords);
    if (info.caption) addLine(block, "caption", *info.caption);
    if (info.date) addLine(block, "date", *info.date);
  }
  for (const std::string& line : picture.infoLines) {
    addLine(block, &line == &picture.infoLines.front() ? "on screen" : "", line);
  }
  if (picture.accepted()) {
    const SizePx size = picture.image->displaySize();
    addLine(block, "decoded", sizeText(size.width, size.height));
  }
  return block;
}

}  // namespace lumivane

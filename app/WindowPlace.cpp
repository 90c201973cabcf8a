#include "app/WindowPlace.h"

#include <cmath>

#include "platform/PrintableText.h"
#include "platform/PropertyList.h"

namespace lumivane {
namespace {

constexpr const char* kFileName = "/lumivane/de.orvik.LumivaneApp.window.plist";
constexpr std::size_t kLargestFileBytes = 64 * 1024;
constexpr double kFarthest = 100'000;  // points; no desktop is as wide

// A whole or a real number that a window can have, else nothing.
std::optional<double> numberAt(const PropertyListDictionary& place, const char* key) {
  const auto found = place.find(key);
  if (found == place.end()) return std::nullopt;
  double number = NAN;
  if (const auto* real = found->second.as<double>()) number = *real;
  if (const auto* whole = found->second.as<std::int64_t>()) number = static_cast<double>(*whole);
  return std::abs(number) <= kFarthest ? std::optional(number) : std::nullopt;
}

std::optional<RectPt> frameIn(const PropertyList& list) {
  const auto* place = list.as<PropertyListDictionary>();
  if (place == nullptr) return std::nullopt;
  const auto x = numberAt(*place, "X");
  const auto y = numberAt(*place, "Y");
  const auto width = numberAt(*place, "Width");
  const auto height = numberAt(*place, "Height");
  if (!x || !y || !width || !height || *width < 1 || *height < 1) return std::nullopt;
  return RectPt{{*x, *y}, {*width, *height}};
}

}  // namespace

WindowPlace::WindowPlace(Files& files, Log& log, const std::string& stateFolder)
    : files_(files), log_(log), path_(stateFolder.empty() ? "" : stateFolder + kFileName) {}

std::optional<RectPt> WindowPlace::load() {
  if (path_.empty() || !files_.exists(path_)) return std::nullopt;
  const Result<std::string> bytes = files_.read(path_, kLargestFileBytes);
  const Result<PropertyList> list = bytes ? parsePropertyList(bytes.value()) : Error{bytes.error()};
  if (list) known_ = frameIn(list.value());
  if (!known_)
    log_.error("The window's place in " + printable(path_) +
               " cannot be used: " + (list ? "no place and size in it" : list.error()));
  return known_;
}

void WindowPlace::save(const RectPt& frame) {
  if (path_.empty() || known_ == frame) return;
  const PropertyListDictionary place{{"X", frame.origin.x},
                                     {"Y", frame.origin.y},
                                     {"Width", frame.size.width},
                                     {"Height", frame.size.height}};
  const Result<std::string> xml = writePropertyListXml(PropertyList(place));
  const Result<Done> written =
      xml ? files_.writeAtomically(path_, xml.value()) : Result<Done>(Error{xml.error()});
  if (!written) return log_.error("The window's place was not saved: " + written.error());
  known_ = frame;
}

}  // namespace lumivane

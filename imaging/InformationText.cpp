#include "imaging/InformationText.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace lumivane {
namespace {

// All that Unicode counts as white space: the ideographic blank that ends many a Japanese caption, too.
constexpr std::array<std::string_view, 25> kWhiteSpace = {
    " ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085", "\u00A0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};
constexpr std::string_view kBetween = ". ";

void appendAfterSeparator(std::string& line, std::string_view part) {
  if (!line.empty()) line += kBetween;
  line += part;
}

// Of the white space that the test finds; 0 = none.
template <typename Test>
std::size_t lengthOfBlank(Test test) {
  const auto* const blank = std::ranges::find_if(kWhiteSpace, test);
  return blank == kWhiteSpace.end() ? 0 : blank->size();
}

std::string_view lastComponent(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace

std::string loggedFilename(std::string_view path) {
  std::string text;
  text.reserve(path.size());
  for (const char c : path) {
    if (c == ':') {
      text += "\\/";
    } else {
      text += c;
    }
  }
  return text;
}

std::string shownFilename(std::string_view path, const FilenameDisplay& display) {
  const std::string named = display.showFileExtension ? std::string(path) : withoutExtension(path);
  // The components are taken before a colon becomes "\/", whose slash separates nothing.
  if (display.displayFilename) return loggedFilename(display.showImagePath ? named : lastComponent(named));
  return display.showImagePath ? loggedFilename(folderPart(named)) : std::string();
}

std::string baseName(std::string_view path) {
  return withoutExtension(lastComponent(path));
}

std::string folderPart(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  return std::string(slash == 0 ? "/" : path.substr(0, slash));
}

std::string withoutExtension(std::string_view path) {
  const std::size_t nameStart = path.size() - lastComponent(path).size();
  const std::size_t dot = path.rfind('.');
  const bool hasExtension = dot != std::string_view::npos && dot > nameStart && dot + 1 < path.size() &&
                            path.find(' ', dot) == std::string_view::npos;
  return std::string(hasExtension ? path.substr(0, dot) : path);
}

std::string replaceNonPrintingChars(std::string text) {
  for (char& c : text) {
    if (c >= 1 && c <= 31) c = ' ';
  }
  return text;
}

std::string trimmed(std::string_view text) {
  const auto begins = [&text](std::string_view blank) { return text.starts_with(blank); };
  const auto ends = [&text](std::string_view blank) { return text.ends_with(blank); };
  while (const std::size_t length = lengthOfBlank(begins)) text.remove_prefix(length);
  while (const std::size_t length = lengthOfBlank(ends)) text.remove_suffix(length);
  return std::string(text);
}

std::optional<std::string> imageDescription(std::string_view path, const std::optional<std::string>& caption,
                                            const std::optional<std::string>& keywords) {
  std::string description;
  if (caption && *caption != baseName(path)) description = trimmed(*caption);
  if (keywords) appendAfterSeparator(description, trimmed(*keywords));
  if (description.empty()) return std::nullopt;
  return replaceNonPrintingChars(std::move(description));
}

std::string coordinatesText(double latitude, double longitude) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "GPS: %+.2f %+.2f", longitude, latitude);
  return text.data();
}

std::string placeName(const Placemark& place) {
  const std::string country = place.country.value_or("(null)");
  return place.locality ? *place.locality + ", " + country : country;
}

std::string informationLine(const std::optional<std::string>& description,
                            const std::optional<std::string>& place, const std::optional<std::string>& date) {
  std::string line = description.value_or("");
  if (place) appendAfterSeparator(line, *place);
  if (date) appendAfterSeparator(line, *date);
  return line;
}

std::string screenText(std::string_view firstLine, const std::optional<std::string>& infoLine,
                       const ScreenTextState& state) {
  std::string text;
  if (state.blank) {
    text = "(blanked)";
  } else {
    text = state.muted ? " " : firstLine;
  }
  if (state.paused) text += " (slideshow paused)";
  if (state.zoomPaused) text += " (zoom paused)";
  if (!state.muted && !state.blank && infoLine && !infoLine->empty()) {
    if (!text.empty()) text += "\n";
    text += *infoLine;
  }
  return text;
}

}  // namespace lumivane

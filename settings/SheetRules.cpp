#include "settings/SheetRules.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "settings/SettingsTable.h"

namespace lumivane {
namespace {

constexpr float kZoomInFactorForNone = 1.1F;
constexpr float kNoZoom = 1.0F;

// What the sheet allows stands in the table of settings. Requires: a key whose row has a range.
std::int64_t smallest(std::string_view key) {
  return static_cast<std::int64_t>(findSetting(key)->sheetRange->smallest);
}
std::int64_t largest(std::string_view key) {
  return static_cast<std::int64_t>(findSetting(key)->sheetRange->largest);
}

// Without the white space before it and without a plus sign, which the parsers below do not know.
std::string_view numberPart(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n\v\f");
  if (begin == std::string_view::npos) return {};
  text.remove_prefix(begin);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

bool isWhiteSpace(gunichar c) {
  constexpr gunichar kVerticalTab = 0x0B;
  constexpr gunichar kNextLine = 0x85;
  return g_unichar_isspace(c) != FALSE || c == kVerticalTab || c == kNextLine;
}

// The character at the beginning; an impossible one where the bytes are not UTF-8.
gunichar firstCharacter(std::string_view text) {
  return g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isWhiteSpace(firstCharacter(text)))
    text.remove_prefix(static_cast<std::size_t>(g_utf8_next_char(text.data()) - text.data()));
  while (!text.empty()) {
    const char* last = g_utf8_find_prev_char(text.data(), text.data() + text.size());
    if (last == nullptr) break;
    const auto at = static_cast<std::size_t>(last - text.data());
    if (!isWhiteSpace(firstCharacter(text.substr(at)))) break;
    text = text.substr(0, at);
  }
  return text;
}

}  // namespace

std::int32_t wholeNumberOfField(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  text = numberPart(text);
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::result_out_of_range) return text.starts_with('-') ? Limits::min() : Limits::max();
  return error == std::errc() ? number : 0;
}

float decimalNumberOfField(std::string_view text) {
  std::string number(numberPart(text));
  std::ranges::replace(number, ',', '.');
  float value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error == std::errc::result_out_of_range) {
    // Reading it as a double tells the very large from the very small.
    double wide = 0;
    const auto wideEnd = std::from_chars(number.data(), number.data() + number.size(), wide);
    if (wideEnd.ec != std::errc() || std::abs(wide) < 1) return 0;
    return std::copysign(std::numeric_limits<float>::max(), static_cast<float>(wide < 0 ? -1 : 1));
  }
  return error == std::errc() && std::isfinite(value) ? value : 0;
}

std::string fieldText(std::int32_t number) {
  return std::to_string(number);
}

std::string fieldText(std::uint32_t number) {
  return fieldText(static_cast<std::int32_t>(number));
}

std::string fieldText(float number) {
  std::array<char, 32> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() ? std::string(text.data(), end) : std::string("0");
}

std::int32_t acceptedDuration(std::int32_t entered, std::int32_t inForce) {
  return entered < smallest("DurationPerImage") ? inForce : entered;
}

ZoomInFactorEntry acceptedZoomInFactor(float entered, float inForce) {
  if (!(entered > kNoZoom)) return {kZoomInFactorForNone, false};
  const float difference = std::abs(entered - inForce);
  return {entered, difference > inForce * std::numeric_limits<float>::epsilon()};
}

std::uint32_t acceptedExcludeSize(std::int32_t entered) {
  return std::max(static_cast<std::uint32_t>(entered), static_cast<std::uint32_t>(smallest("ExcludeSize")));
}

std::uint32_t acceptedFontSize(std::int32_t entered) {
  return std::clamp(static_cast<std::uint32_t>(entered), static_cast<std::uint32_t>(smallest("FontSize")),
                    static_cast<std::uint32_t>(largest("FontSize")));
}

std::int32_t acceptedInfoDelay(std::int32_t entered, std::int32_t durationPerImage) {
  return std::clamp(entered, 0, std::max(durationPerImage / 2, 0));
}

std::vector<std::string> skipPatternsOf(std::string_view text) {
  std::vector<std::string> patterns;
  for (const std::string& line : linesOf(text)) {
    if (const std::string_view pattern = trimmed(line); !pattern.empty()) patterns.emplace_back(pattern);
  }
  return patterns;
}

}  // namespace lumivane

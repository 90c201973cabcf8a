#include "tools/SettingText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "collection/FolderBookmarks.h"
#include "platform/PrintableText.h"
#include "settings/TypedValue.h"

namespace lumivane {
namespace {

template <typename Number>
std::string numberText(Number value) {
  std::array<char, 64> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() ? std::string(text.data(), end) : std::string();
}

std::string bookmarkPaths(const std::vector<std::string>& bookmarks) {
  std::vector<std::string> paths;
  for (const std::string& bookmark : bookmarks) {
    if (bookmark.empty()) continue;
    const Result<BookmarkRecord> record = parseBookmark(bookmark);
    paths.push_back(record ? printable(record.value().path) : "(not a bookmark)");
  }
  return joinedLines(paths);
}

// Control characters made visible, except the line feeds between lines.
std::string printableLines(const std::vector<std::string>& lines) {
  std::vector<std::string> shown;
  for (const std::string& line : lines) shown.push_back(printable(line));
  return joinedLines(shown);
}

struct ShowField {
  const SettingRow& row;
  const DisplaySettings& settings;

  std::string operator()(bool DisplaySettings::*field) const { return settings.*field ? "true" : "false"; }
  std::string operator()(std::string DisplaySettings::*field) const { return printable(settings.*field); }
  std::string operator()(TextLines DisplaySettings::*field) const {
    return row.type == SettingType::Array ? bookmarkPaths(settings.*field) : printableLines(settings.*field);
  }
  template <typename Number>
  std::string operator()(Number DisplaySettings::*field) const {
    return numberText(settings.*field);
  }
};

std::optional<bool> truthOf(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  for (const std::string_view yes : {"true", "yes", "on", "1"}) {
    if (lower == yes) return true;
  }
  for (const std::string_view no : {"false", "no", "off", "0"}) {
    if (lower == no) return false;
  }
  return std::nullopt;
}

bool isStorable(std::string_view text) {
  return isValidUtf8(text) && std::ranges::none_of(text, [](char c) {
           return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t';
         });
}

struct SetField {
  const SettingRow& row;
  std::string_view text;
  DisplaySettings& settings;

  Result<Done> operator()(bool DisplaySettings::*field) const {
    const std::optional<bool> truth = truthOf(text);
    if (!truth) return wants("true or false");
    settings.*field = *truth;
    return Done{};
  }
  Result<Done> operator()(float DisplaySettings::*field) const {
    const std::optional<double> number = numberOfText(text);
    if (!number || std::abs(*number) > double{std::numeric_limits<float>::max()}) return wants("a number");
    settings.*field = static_cast<float>(*number);
    return Done{};
  }
  Result<Done> operator()(std::string DisplaySettings::*field) const {
    if (!isStorable(text)) return wants("text without control characters");
    settings.*field = std::string(text);
    return Done{};
  }
  Result<Done> operator()(TextLines DisplaySettings::*field) const {
    if (row.type == SettingType::Array)
      return Error{std::string(row.key) + " cannot be set here; collect a folder"};
    if (!isStorable(text)) return wants("text without control characters other than line feeds");
    settings.*field = linesOf(text);
    return Done{};
  }
  template <typename Number>
  Result<Done> operator()(Number DisplaySettings::*field) const {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return wants("a whole number in range");
    settings.*field = number;
    return Done{};
  }

  [[nodiscard]] Error wants(const char* what) const {
    return Error{std::string(row.key) + " takes " + what + ", not \"" + printable(text) + "\""};
  }
};

struct AsNumber {
  const DisplaySettings& settings;
  std::optional<double> operator()(std::int32_t DisplaySettings::*field) const { return settings.*field; }
  std::optional<double> operator()(std::uint32_t DisplaySettings::*field) const { return settings.*field; }
  std::optional<double> operator()(float DisplaySettings::*field) const { return double{settings.*field}; }
  template <typename Other>
  std::optional<double> operator()(Other) const {
    return std::nullopt;
  }
};

std::optional<std::string> rangeObjection(const SettingRow& row, const DisplaySettings& settings) {
  const std::optional<double> number = std::visit(AsNumber{settings}, row.field);
  if (!number || !row.sheetRange) return std::nullopt;
  if (*number >= row.sheetRange->smallest && *number <= row.sheetRange->largest) return std::nullopt;
  return std::string(row.key) + " is outside of what the preferences allow";
}

}  // namespace

std::string settingText(const SettingRow& row, const DisplaySettings& settings) {
  return std::visit(ShowField{row, settings}, row.field);
}

Result<Done> setFromText(const SettingRow& row, std::string_view text, DisplaySettings& settings) {
  return std::visit(SetField{row, text, settings}, row.field);
}

std::optional<std::string> sheetObjection(const SettingRow& row, const DisplaySettings& settings) {
  if (std::optional<std::string> objection = rangeObjection(row, settings)) return objection;
  const bool delay = row.key == "InfoDelay" || row.key == "DurationPerImage";
  if (delay && settings.infoDelay_ > settings.durationPerImage_ / 2) {
    return "InfoDelay is more than half of DurationPerImage, which the preferences do not allow";
  }
  const bool motion = row.key == "ZoomIsOn" || row.key == "KenBurnsIsOn";
  if (motion && settings.zoomIsOn_ && settings.kenBurnsIsOn_) {
    return "ZoomIsOn and KenBurnsIsOn are both on, which the preferences do not allow";
  }
  return std::nullopt;
}

}  // namespace lumivane

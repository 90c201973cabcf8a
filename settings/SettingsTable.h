// The twenty-four settings of a display, in one table: key, type, default, field, meaning, and what the preferences
// sheet allows. Loading, saving, the sheet and the companion program all go by it.
//
// Threads: any; constant.
// Units:   as DisplaySettings says.
// Errors:  none.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/PropertyList.h"
#include "settings/DisplaySettings.h"

namespace lumivane {

enum class SettingType { Integer, Float, Bool, String, Array };

// Which field a setting feeds. Text lines are stored as one string with line feeds between them; blobs as an array
// of data.
using TextLines = std::vector<std::string>;
using SettingField =
    std::variant<std::int32_t DisplaySettings::*, std::uint32_t DisplaySettings::*, float DisplaySettings::*,
                 bool DisplaySettings::*, std::string DisplaySettings::*, TextLines DisplaySettings::*>;

// The registered default. None for the bookmarks, whose default is given when the settings are loaded.
using SettingDefault = std::variant<std::monostate, std::int64_t, float, bool, std::string_view>;

// What the sheet lets a user enter; other values can be stored by other means.
struct SheetRange {
  double smallest = 0;
  double largest = 0;
};

struct SettingRow {
  std::string_view key;
  SettingType type;
  SettingDefault registeredDefault;
  SettingField field;
  std::optional<SheetRange> sheetRange;
  std::string_view meaning;
};

inline constexpr std::size_t kSettingCount = 24;

// In the order in which the settings are loaded.
[[nodiscard]] const std::array<SettingRow, kSettingCount>& settingsTable();

// nullptr when there is no such key; case counts.
[[nodiscard]] const SettingRow* findSetting(std::string_view key);

// The list that means that no folder was ever chosen: one empty blob.
[[nodiscard]] std::vector<std::string> emptyBookmarkList();

// The table's defaults as a settings domain takes them.
[[nodiscard]] PropertyListDictionary registeredDefaults(const std::vector<std::string>& emptyBookmarks);

// Between a list of lines and the one string that is stored: split at every line feed, nothing trimmed, nothing
// dropped; an empty string is one empty line.
[[nodiscard]] std::vector<std::string> linesOf(std::string_view text);
[[nodiscard]] std::string joinedLines(const std::vector<std::string>& lines);

}  // namespace lumivane

// Settings as text: what the companion program shows and takes.
//
// Threads: any; pure functions.
// Errors:  a text that does not fit a setting's type is an Error.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Result.h"
#include "settings/SettingsDomain.h"
#include "settings/SettingsTable.h"

namespace lumivane {

// The field's value: "true"/"false", a number, or lines of text. Folder bookmarks are shown as their paths.
[[nodiscard]] std::string settingText(const SettingRow& row, const DisplaySettings& settings);

// Sets the field from a text. Whole numbers must fit the field; truths are true/false, yes/no, on/off or 1/0;
// texts may hold line feeds but no other control character. Bookmarks cannot be set.
[[nodiscard]] Result<Done> setFromText(const SettingRow& row, std::string_view text,
                                       DisplaySettings& settings);

// What the preferences sheet would not have let through; absent when all is well.
[[nodiscard]] std::optional<std::string> sheetObjection(const SettingRow& row,
                                                        const DisplaySettings& settings);

}  // namespace lumivane

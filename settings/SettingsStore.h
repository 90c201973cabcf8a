// Opens the settings of a display by their name, and moves them between a domain and DisplaySettings.
//
// Threads: main only.
// Owns:    nothing; a domain belongs to whoever asked for it and must not outlive the files and the log.
// Format:  one file per display in the user's configuration folder, "de.orvik.LumivaneApp.<display>.plist", the
//          display's name made into a safe part of a file name (DisplayFileName.h).
// Errors:  as SettingsDomain.h says.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/Files.h"
#include "platform/Log.h"
#include "settings/DisplaySettings.h"
#include "settings/SettingsDomain.h"
#include "settings/SettingsTable.h"

namespace lumivane {

// The name of a display's settings: "de.orvik.LumivaneApp." and the display's name as it is.
[[nodiscard]] std::string settingsDomainName(std::string_view displayName);

class SettingsStore {
 public:
  // An empty configuration folder means that there is none: no domain can be opened.
  SettingsStore(Files& files, Log& log, std::string configFolder)
      : files_(files), log_(log), configFolder_(std::move(configFolder)) {}

  // nullptr when there is no place for settings.
  [[nodiscard]] std::unique_ptr<SettingsDomain> defaultsForModuleWithName(std::string_view name);

 private:
  Files& files_;
  Log& log_;
  const std::string configFolder_;
};

// Every field by its key, typed. What does not fit a field becomes the nearest that does; nothing else is changed.
// No domain (nullptr): all zero and empty.
[[nodiscard]] DisplaySettings loadSettings(const SettingsDomain* domain);

// Every key from its field, or one. Nothing reaches the file before the domain is synchronized.
void saveSettings(SettingsDomain& domain, const DisplaySettings& settings);
void saveSetting(SettingsDomain& domain, const SettingRow& row, const DisplaySettings& settings);

}  // namespace lumivane

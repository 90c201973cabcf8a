// Loads and saves the settings of the display that a view stands on, and says in the log how that went.
//
// Threads: main only.
// Owns:    the display's settings domain, from one load to the next.
// Errors:  logged; a display whose settings cannot be opened gets zeroed ones, a failed flush loses nothing in memory.
//
// This is the part of loading that needs no screen. The view around it first shows "Loading ..", and afterwards
// resolves the folder bookmarks (or names the album), restarts its frame clock, fills the sheet's controls, switches
// the album mode off and takes the help text (HelpText.h).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Log.h"
#include "settings/DisplaySettings.h"
#include "settings/SettingsStore.h"
#include "settings/SettingsTable.h"

namespace lumivane {

class PreferencesStore {
 public:
  PreferencesStore(SettingsStore& store, Log& log) : store_(store), log_(log) {}

  // Opens the display's domain, closing the one before, and reads every setting. `emptyBookmarks` is the default
  // of the bookmarks: the list that means that no folder was ever chosen.
  [[nodiscard]] DisplaySettings load(const std::string& displayName,
                                     const std::vector<std::string>& emptyBookmarks = emptyBookmarkList());

  // Writes every setting into the domain of the display loaded last, and flushes it. False when that failed.
  bool save(const DisplaySettings& settings);

  // nullptr before the first load, and when the domain could not be opened.
  [[nodiscard]] const SettingsDomain* defaults() const { return defaults_.get(); }

 private:
  // Without a domain there is nothing to flush into: that fails too.
  bool flush();

  SettingsStore& store_;
  Log& log_;
  std::unique_ptr<SettingsDomain> defaults_;
  std::string displayName_;
};

}  // namespace lumivane

// Finds this user's folders by the XDG base directories and the file user-dirs.dirs.
//
// Threads: any.
// Errors:  as in UserFolders.h; a user-dirs.dirs that cannot be read counts as absent.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"
#include "platform/UserFolders.h"
#include "platform/linux/Environment.h"

namespace lumivane {

// Nothing is made; folders that are missing come into being with the first file that is written to them.
[[nodiscard]] UserFolders xdgUserFolders(const Environment& environment, const Files& files);

// The Pictures folder as the text of user-dirs.dirs names it, for the given home folder. Absent: not named there, or
// switched off by pointing at the home folder itself.
[[nodiscard]] std::optional<std::string> picturesFolderNamedIn(std::string_view userDirs,
                                                               const std::string& home);

}  // namespace lumivane

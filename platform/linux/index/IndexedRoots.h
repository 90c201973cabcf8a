// The folders that the desktop's index has been set to take in with everything below them.
//
// Threads: any.
// Errors:  absent where there are no such settings.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumivane {

// As the user's settings say. The index also takes in single folders without those below them; these are not told,
// for it does not cover them.
[[nodiscard]] std::optional<std::vector<std::string>> indexedRootsOfUser();

// What an entry of these settings means: "&PICTURES" and its like are the user's own folders (their name is handed to
// `userFolder`, which gives an absent one as empty), "$HOME" and "~" at the beginning are the home folder. Empty: none.
[[nodiscard]] std::string expandedRoot(std::string_view entry, const std::string& home,
                                       const std::function<std::string(std::string_view name)>& userFolder);

// Whether the folder is one of the roots or lies below one. All are absolute paths.
[[nodiscard]] bool isBelowRoots(const std::string& folder, const std::vector<std::string>& roots);

}  // namespace lumivane

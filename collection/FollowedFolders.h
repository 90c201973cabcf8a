// Answers the walk's questions without a user: yes to every folder behind a link, but to none a second time.
//
// Threads: one at a time.
// Errors:  none.
#pragma once

#include <string>
#include <vector>

#include "collection/DirectoryWalk.h"

namespace lumivane {

// A folder is refused when it is one that is walked anyway: the main folder, one allowed before, or one below
// these. So a link that leads back up does not make its tree be walked again and again.
class FollowedFolders {
 public:
  explicit FollowedFolders(const std::string& mainDirectory);
  [[nodiscard]] PermissionAnswer answer(const std::string& folder);

 private:
  std::vector<std::string> walked_;  // paths through no links
};

}  // namespace lumivane

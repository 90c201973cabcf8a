// What makes a folder itself, whatever it is called: told apart from another folder at the same place, and found
// again under another name.
//
// Threads: any; pure functions over the file system.
// Units:   numbers as the system gives them; 0 = unknown.
// Errors:  a folder that is not there, or is none, has no identity; `error` says why.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Result.h"

namespace lumivane {

struct FolderIdentity {
  std::uint64_t fileSystem = 0;  // the file system's own number, which outlasts a restart where there is one
  std::uint64_t device = 0;      // may be another after a restart
  std::uint64_t inode = 0;       // 0 on file systems that give a folder a new one whenever they are mounted
  std::int64_t birthNanoseconds = 0;  // since 1970
  bool operator==(const FolderIdentity&) const = default;
};

// The identity of the folder at a path; links are followed.
[[nodiscard]] Result<FolderIdentity> identityOfFolder(const std::string& path);

// Whether both are the same folder, as far as can be told: unknown inodes count as the same.
[[nodiscard]] bool sameFolder(const FolderIdentity& a, const FolderIdentity& b);

// The folder of that identity among those beside `path`, which is gone; absent when it is not there or cannot be told.
[[nodiscard]] std::optional<std::string> renamedFolder(const std::string& path,
                                                       const FolderIdentity& identity);

}  // namespace lumivane

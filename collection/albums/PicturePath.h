// Where the file of a picture is, from what the library's database says of it. The database may have been made to
// name files of somebody else's.
//
// Threads: any; pure functions, but for cloudFolderOf().
// Errors:  absent for a name that would lead out of its folder, or that no list of pictures can hold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace lumivane {

// The folders of one library.
struct PackageFolders {
  std::string package;      // absolute
  std::string cloudFolder;  // of pictures that others share
};

// Looks where this library keeps the pictures that others share: releases differ.
[[nodiscard]] PackageFolders foldersOf(const std::string& package);

struct StoredLocation {
  std::string directory;  // below the package's own folders; from "/" on: of a file that was never copied
  std::string fileName;
  std::int64_t savedAssetType = 0;
};

// Of a file that was never copied into the package, only a picture's name is believed.
[[nodiscard]] std::optional<std::string> picturePath(const PackageFolders& folders,
                                                     const StoredLocation& location);

}  // namespace lumivane

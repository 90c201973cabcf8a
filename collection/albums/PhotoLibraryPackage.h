// Finds the photo library: a package, which is a folder whose name ends in ".photoslibrary".
//
// Threads: any; pure functions over the file system.
// Errors:  a folder that cannot be read holds no library.
#pragma once

#include <optional>
#include <string>

namespace lumivane {

// The library that `named` names, whether it is there or not; without a name, the first package of the pictures
// folder in the order of a file browser. A link to a package is as good as the package. Absent when nothing was
// named and no package is there. The path is absolute and keeps the name that the user gave; only where that does
// not end as a package's does, and what it links to does, it is the latter.
[[nodiscard]] std::optional<std::string> findPhotoLibrary(const std::string& named,
                                                          const std::string& picturesFolder);

}  // namespace lumivane

// The photo library that a command works with.
//
// Threads: main only.
// Errors:  none; a library that is not there is told when it is read.
#pragma once

#include <string>
#include <vector>

#include "collection/albums/SqlitePhotoLibrary.h"
#include "tools/Tool.h"

namespace lumivane {

// The one that the first operand names, else $LUMIVANE_PHOTOS_LIBRARY, else the first of the Pictures folder.
[[nodiscard]] SqlitePhotoLibrary photoLibraryFor(const Tool& tool, const std::vector<std::string>& operands);

// The albums of the library; absent after a failure, which is explained on standard error.
[[nodiscard]] std::optional<std::vector<Album>> albumsFor(const Tool& tool, const PhotoLibrary& library);

}  // namespace lumivane

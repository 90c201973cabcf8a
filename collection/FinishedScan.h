// What is done with the pictures that a scan found, before they are saved and shown.
//
// Threads: main only (tools: any one).
// Errors:  logged; the pictures are kept in any case.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "collection/DirectoryWalk.h"
#include "collection/FolderBookmarks.h"
#include "platform/Log.h"

namespace lumivane {

// The count that is shown at the end of a scan: of a search in an index the pictures alone, of a walk the folders
// that it reached through links as well.
[[nodiscard]] std::string scanCountText(bool useSpotlight, std::size_t numImages,
                                        std::size_t numRootDirectories);

struct FinishedScan {
  std::string countText;
  std::optional<std::vector<FolderBookmark>> directoryBookmarks;
  std::vector<std::string> imagefiles;  // in the order of the file browser
};

// Counts, makes the bookmarks, and sorts, in this order. Saving the list and then the settings is the caller's,
// since both are needed only where there is a display.
[[nodiscard]] FinishedScan finishScan(WalkResult found, bool useSpotlight, const std::string& locale,
                                      Log& log);

}  // namespace lumivane

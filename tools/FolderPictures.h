// Finds the pictures of a folder for the terminal, by a walk or by a search in an index.
//
// Threads: main only; blocks, and shows how far it is where there is a terminal.
// Errors:  logged, as DirectoryWalk.h and PictureSearch.h say.
#pragma once

#include <string>
#include <vector>

#include "collection/DirectoryWalk.h"
#include "engine/SpotlightScan.h"
#include "tools/Tool.h"

namespace lumivane {

struct LeftOutFile {
  std::string path;
  LeftOut rule = LeftOut::Type;
};

struct FolderPictures {
  WalkResult found;
  std::vector<LeftOutFile> leftOut;  // by path; empty unless they were asked for
};

[[nodiscard]] FolderPictures walkFolder(const Tool& tool, WalkRequest request, bool explain);

// Who asks what is left out is also told which index was searched, on standard error.
[[nodiscard]] FolderPictures searchFolder(const Tool& tool, const SpotlightRequest& request, bool explain);

}  // namespace lumivane

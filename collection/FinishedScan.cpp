#include "collection/FinishedScan.h"

#include <utility>

#include "collection/FileNameOrder.h"

namespace lumivane {

std::string scanCountText(bool useSpotlight, std::size_t numImages, std::size_t numRootDirectories) {
  if (useSpotlight) return std::to_string(numImages);
  const std::size_t numAliases = numRootDirectories == 0 ? 0 : numRootDirectories - 1;
  return std::to_string(numImages) + "   (# alias dirs = " + std::to_string(numAliases) + ")";
}

FinishedScan finishScan(WalkResult found, bool useSpotlight, const std::string& locale, Log& log) {
  FinishedScan finished;
  finished.countText = scanCountText(useSpotlight, found.imagefiles.size(), found.rootDirectories.size());
  finished.directoryBookmarks = createBookmarks(std::move(found.rootDirectories), log);
  finished.imagefiles = std::move(found.imagefiles);
  sortByFileName(finished.imagefiles, locale);
  return finished;
}

}  // namespace lumivane

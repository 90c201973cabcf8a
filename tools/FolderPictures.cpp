#include "tools/FolderPictures.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "collection/index/DimensionCacheFile.h"
#include "collection/index/FolderFiles.h"
#include "collection/index/IndexQuery.h"
#include "platform/PrintableText.h"
#include "platform/linux/index/IndexedRoots.h"
#include "platform/linux/index/SessionBusAddress.h"
#include "platform/linux/index/TrackerIndex.h"
#include "tools/PictureProcess.h"
#include "tools/ProgressLine.h"

namespace lumivane {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{20};

void sortByPath(std::vector<LeftOutFile>& files) {
  std::ranges::sort(files, {}, &LeftOutFile::path);
}

// Tells information as well as errors.
class TellingLog final : public Log {
 public:
  explicit TellingLog(const Tool& tool) : tool_(tool) {}
  void write(std::string_view text, LogLevel level) override {
    if (level == LogLevel::Error) return tool_.log.write(text, level);
    tool_.err << "lumivane: " << printable(text) << '\n' << std::flush;
  }

 private:
  const Tool& tool_;
};

std::vector<std::string> runSearch(const Tool& tool, PictureSources sources,
                                   const PicturePredicate& predicate) {
  IndexQuery query(std::move(sources));
  ProgressLine progress(tool.err, tool.onTerminal);
  query.start(predicate);
  while (query.isGathering()) {
    progress.show("num images so far = " + std::to_string(query.resultCount()));
    std::this_thread::sleep_for(kBetweenLooks);
  }
  std::vector<std::string> paths(query.resultCount());
  for (std::size_t i = 0; i < paths.size(); ++i) paths[i] = query.path(i);
  return paths;
}

// The desktop's index does not say what it leaves out: the files themselves are asked, with the same rules.
std::vector<LeftOutFile> leftOutOf(const Tool& tool, PictureSources sources,
                                   const PicturePredicate& predicate, std::vector<std::string> found) {
  std::vector<LeftOutFile> leftOut;
  sources.tellLeftOut = [&leftOut](const std::string& path, LeftOut rule) {
    leftOut.push_back({path, rule});
  };
  FolderFiles files(tool.log, sources.tellLeftOut);
  sources.indices = {&files};
  std::ranges::sort(found);
  for (std::string& path : runSearch(tool, std::move(sources), predicate)) {
    if (!std::ranges::binary_search(found, path)) leftOut.push_back({std::move(path), LeftOut::NotInIndex});
  }
  // The two may think differently of a damaged file.
  std::erase_if(leftOut,
                [&found](const LeftOutFile& file) { return std::ranges::binary_search(found, file.path); });
  return leftOut;
}

}  // namespace

FolderPictures walkFolder(const Tool& tool, WalkRequest request, bool explain) {
  FolderPictures pictures;
  if (explain) {
    request.tellLeftOut = [&pictures](const std::string& path, LeftOut rule) {
      pictures.leftOut.push_back({path, rule});
    };
  }
  DirectoryWalk walk(std::move(request), tool.log);
  ProgressLine progress(tool.err, tool.onTerminal);
  if (progress.active()) {
    walk.start();
    while (!walk.isFinished()) {
      progress.show("num images so far = " + std::to_string(walk.numImages()));
      std::this_thread::sleep_for(kBetweenLooks);
    }
  } else {
    walk.scanDirectoryByHand();
  }
  pictures.found = walk.takeResult();
  sortByPath(pictures.leftOut);
  return pictures;
}

FolderPictures searchFolder(const Tool& tool, const SpotlightRequest& request, bool explain) {
  TellingLog telling(tool);
  Log& log = explain ? static_cast<Log&>(telling) : tool.log;
  TrackerIndex desktopIndex(sessionBusAddress(tool.environment, tool.files), indexedRootsOfUser);
  FolderFiles folderFiles(log);
  PictureProcess process(tool);
  PictureDimensions& dimensions = process.dimensions();
  const PictureSources sources{{&desktopIndex, &folderFiles},          dimensions, tool.files,
                               dimensionCachePath(tool.folders.cache), log,        {}};
  const PicturePredicate predicate = predicateOf(request);

  FolderPictures pictures;
  pictures.found.rootDirectories = {request.mainDirectoryLocation};
  std::vector<std::string> paths = runSearch(tool, sources, predicate);
  if (explain) {
    pictures.leftOut =
        leftOutOf(tool, {{}, dimensions, tool.files, sources.cachePath, tool.log, {}}, predicate, paths);
  }
  SkipPatterns skipPatterns(request.skipPatterns, tool.log);
  for (std::string& path : paths) {
    if (!skipPatterns.matchesSkipPattern(path))
      pictures.found.imagefiles.push_back(std::move(path));
    else if (explain)
      pictures.leftOut.push_back({std::move(path), LeftOut::SkipPattern});
  }
  sortByPath(pictures.leftOut);
  return pictures;
}

}  // namespace lumivane

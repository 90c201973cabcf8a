// Collects pictures from the desktop's index of file metadata. The index finds them; this copies their paths, a slice
// of time four times a second, so that the main thread stays responsive however many there are.
//
// Threads: main only.
// Owns:    the running query; a skip pattern's compiled form.
// Units:   as PicturePredicate says.
// Errors:  none; an index that finds nothing gives an empty collection.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "collection/SkipPatterns.h"
#include "engine/FolderScan.h"
#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/MainLoop.h"
#include "platform/MetadataQuery.h"

namespace lumivane {

struct SpotlightRequest {
  std::string mainDirectoryLocation{};
  std::uint32_t excludekB = 0;    // KiB
  std::uint32_t excludeSize = 0;  // pixels
  std::vector<std::string> skipPatterns{};
};

// What the index is asked for. The size in bytes wraps beyond 4 GiB, as that of a walk does.
[[nodiscard]] PicturePredicate predicateOf(const SpotlightRequest& request);

class SpotlightScan final : public FolderScan {
 public:
  // Starts at once. `identity` names the show in the log.
  SpotlightScan(SpotlightRequest request, MetadataQuery& query, const Clock& clock, MainLoop& mainLoop,
                Log& log, const void* identity, FolderScanEvents events);
  ~SpotlightScan() override;

  void abandon() override;

 private:
  void checkOnSpotlightQuery();
  void beginCopying();
  [[nodiscard]] bool copySlice();  // true: there is nothing left to copy
  void endQuery();

  MetadataQuery* query_;  // nullptr: the search is over
  const Clock& clock_;
  MainLoop& mainLoop_;
  Log& log_;
  const void* const identity_;
  FolderScanEvents events_;
  SkipPatterns skipPatterns_;
  std::size_t collect_index_ = 0;  // the next result to copy; 0 = copying has not begun
  WalkResult found_;
  std::unique_ptr<Timer> queryProgressTimer_;
};

}  // namespace lumivane

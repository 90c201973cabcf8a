// One search for the pictures of a folder tree, in whatever way, from its start to the last picture.
//
// Threads: main only; a search may run elsewhere, but tells here.
// Errors:  a search that fails ends with what it has found.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include "collection/DirectoryWalk.h"

namespace lumivane {

// How often a running search is looked after.
inline constexpr std::chrono::milliseconds kScanPollInterval{250};
inline constexpr std::chrono::milliseconds kScanPollTolerance{25};

struct FolderScanEvents {
  std::function<void(std::size_t numImages)> progressed;
  std::function<void(const std::string& text)> logAndDisplay;
  // The last thing that a search tells. It must not be destroyed before this call has returned.
  std::function<void(WalkResult found)> finished;
};

class FolderScan {
 public:
  virtual ~FolderScan() = default;
  // Tells nothing any more. What then is left may be destroyed on any thread, and may take its time for that.
  virtual void abandon() = 0;
};

}  // namespace lumivane

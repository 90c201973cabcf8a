// Asks where the chosen folders are now, of disks that may be asleep or gone, without holding up the show.
//
// Threads: main only; the disks are asked on a thread of their own.
// Owns:    the question that is open; an answer to an earlier one, or after the end, is not told.
// Errors:  logged, as FolderBookmarks.h says.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "collection/FolderBookmarks.h"
#include "platform/BoundedCalls.h"
#include "platform/Log.h"
#include "platform/MainLoop.h"

namespace lumivane {

class FolderLookup {
 public:
  using LateAnswer = std::function<void(const ResolvedBookmarks& resolved)>;

  // nullptr: every answer is waited for.
  FolderLookup(BoundedCalls* calls, MainLoop& mainLoop, Log& log)
      : calls_(calls), mainLoop_(mainLoop), log_(log) {}

  // Where disks do not answer at once, their folders are taken to be where they were; what they answer after all
  // goes to `late`.
  [[nodiscard]] ResolvedBookmarks resolve(const std::vector<FolderBookmark>& bookmarks, LateAnswer late);

 private:
  BoundedCalls* const calls_;
  MainLoop& mainLoop_;
  Log& log_;
  std::shared_ptr<const LateAnswer> open_;  // nullptr: nobody waits for an answer
};

}  // namespace lumivane

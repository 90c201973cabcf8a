// Walks through a folder tree on a thread of its own, and tells four times a second how far it has got.
//
// Threads: main only; the walk's own thread is told of in DirectoryWalk.h.
// Owns:    the walk and its thread; the question that the walk waits for.
// Errors:  as DirectoryWalk.h says.
#pragma once

#include <memory>

#include "collection/MainThreadQuestion.h"
#include "engine/FolderScan.h"
#include "platform/Log.h"
#include "platform/MainLoop.h"

namespace lumivane {

class WalkScan final : public FolderScan {
 public:
  // Starts at once. `askAboutAlias` puts the walk's questions; request.askPermission is not used. `identity` names
  // the show in the log.
  WalkScan(WalkRequest request, MainThreadQuestion::Present askAboutAlias, MainLoop& mainLoop, Log& log,
           const void* identity, FolderScanEvents events);

  void abandon() override;

 private:
  void checkOnDirectoryScan();

  MainLoop& mainLoop_;
  Log& log_;
  const void* const identity_;
  FolderScanEvents events_;
  MainThreadQuestion question_;
  std::unique_ptr<Timer> queryProgressTimer_;  // nullptr: nothing is told any more
  DirectoryWalk walk_;                         // last: its thread ends before anything it uses
};

}  // namespace lumivane

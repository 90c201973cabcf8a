#include "engine/WalkScan.h"

#include <utility>

#include "engine/FormattedText.h"
#include "engine/RetiredTimer.h"

namespace lumivane {
namespace {

WalkRequest asking(WalkRequest request, MainThreadQuestion& question) {
  request.askPermission = [&question](const std::string& folder, const std::stop_token& stop) {
    return question.ask(folder, stop);
  };
  return request;
}

}  // namespace

WalkScan::WalkScan(WalkRequest request, MainThreadQuestion::Present askAboutAlias, MainLoop& mainLoop,
                   Log& log, const void* identity, FolderScanEvents events)
    : mainLoop_(mainLoop),
      log_(log),
      identity_(identity),
      events_(std::move(events)),
      question_(mainLoop, std::move(askAboutAlias)),
      queryProgressTimer_(
          mainLoop.every(kScanPollInterval, kScanPollTolerance, [this] { checkOnDirectoryScan(); })),
      walk_(asking(std::move(request), question_), log) {
  walk_.start();
}

void WalkScan::abandon() {
  queryProgressTimer_.reset();
}

void WalkScan::checkOnDirectoryScan() {
  if (!queryProgressTimer_) return;
  if (!walk_.isFinished()) {
    const std::size_t soFar = walk_.numImages();
    log_.information(formatted("num images so far = %zu ...\n", soFar));
    events_.progressed(soFar);
    return;
  }
  retireTimer(mainLoop_, std::move(queryProgressTimer_));
  WalkResult found = walk_.takeResult();
  events_.logAndDisplay("Finished directory scan.");
  log_.information(formatted("Num images = %zu  (id = %p)", found.imagefiles.size(), identity_));
  events_.finished(std::move(found));
}

}  // namespace lumivane

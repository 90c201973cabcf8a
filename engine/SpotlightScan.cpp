#include "engine/SpotlightScan.h"

#include <utility>

#include "engine/FormattedText.h"
#include "engine/RetiredTimer.h"

namespace lumivane {
namespace {

constexpr std::uint32_t kBytesPerKiB = 1024;
constexpr std::chrono::milliseconds kSlice{200};
constexpr std::size_t kRoomForImages = 1000;

}  // namespace

PicturePredicate predicateOf(const SpotlightRequest& request) {
  return {request.mainDirectoryLocation, request.excludekB * kBytesPerKiB, request.excludeSize};
}

SpotlightScan::SpotlightScan(SpotlightRequest request, MetadataQuery& query, const Clock& clock,
                             MainLoop& mainLoop, Log& log, const void* identity, FolderScanEvents events)
    : query_(&query),
      clock_(clock),
      mainLoop_(mainLoop),
      log_(log),
      identity_(identity),
      events_(std::move(events)),
      skipPatterns_(request.skipPatterns, log) {
  found_.rootDirectories = {request.mainDirectoryLocation};
  query.start(predicateOf(request));
  queryProgressTimer_ =
      mainLoop.every(kScanPollInterval, kScanPollTolerance, [this] { checkOnSpotlightQuery(); });
}

SpotlightScan::~SpotlightScan() {
  endQuery();
}

void SpotlightScan::abandon() {
  queryProgressTimer_.reset();
  endQuery();
}

void SpotlightScan::endQuery() {
  if (query_ != nullptr) query_->stop();
  query_ = nullptr;
}

void SpotlightScan::checkOnSpotlightQuery() {
  if (query_ == nullptr) return;
  if (query_->isGathering()) {
    events_.progressed(query_->resultCount());
    return;
  }
  query_->disableUpdates();
  if (collect_index_ == 0) beginCopying();
  if (!copySlice()) {
    events_.progressed(found_.imagefiles.size());
    return;
  }
  retireTimer(mainLoop_, std::move(queryProgressTimer_));
  endQuery();
  events_.finished(std::move(found_));
}

void SpotlightScan::beginCopying() {
  log_.information(formatted("Finished spotlight search; num images from query = %zu  (id = %p)",
                             query_->resultCount(), identity_));
  found_.imagefiles.reserve(kRoomForImages);
}

bool SpotlightScan::copySlice() {
  const MediaTime begin = clock_.now();
  while (collect_index_ < query_->resultCount()) {
    std::string path = query_->path(collect_index_++);
    if (!skipPatterns_.matchesSkipPattern(path)) found_.imagefiles.push_back(std::move(path));
    if (clock_.now() - begin > kSlice) return false;
  }
  return true;
}

}  // namespace lumivane

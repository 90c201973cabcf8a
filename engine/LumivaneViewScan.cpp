// A new collection of pictures: how the show is stopped for it, and how it begins again with what was found.
#include <utility>

#include "engine/CollectionScan.h"
#include "engine/LumivaneView.h"

namespace lumivane {

void LumivaneView::scanForImages() {
  if (queryIsInProgress_) return;
  stopAnimation();
  if (settings_.useAlbum_) {
    collectionScan_->scanIPhotoPaths(settings_.selectedAlbum_);
  } else {
    collectionScan_->scanDirectory();
  }
}

// What the slot holds, the queue still brings and the history keeps was chosen by its position in the old list.
void LumivaneView::replaceImageFiles(ImageList imagefiles) {
  imagefiles_ = std::move(imagefiles);
  prefetch_.empty();
  prefetch_.prefetchNextImageFailed_ = false;
  abandonPrefetch();
  history_.clearAtNextStore();
  order_.refill(imagefiles_.size());
}

void LumivaneView::startWithFreshCollection() {
  const bool anywhere = settings_.startWithRandom_ && !imagefiles_.empty();
  img_index_ = anywhere ? randomPosition(host_.random, imagefiles_.size()) : 0;
  last_scan_ = host_.clock.wallTime();
  queryIsInProgress_ = false;
  // There is no picture to be rebuilt, and the first one shall not wait for that.
  windowResizingHappened_ = false;
  startNewCycleWithFreshImageList();
  startAnimation();
}

}  // namespace lumivane

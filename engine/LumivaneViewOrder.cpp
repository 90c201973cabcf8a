// Which picture of the list comes next, and the restarts of the slideshow's timing.
#include "engine/LumivaneView.h"

namespace lumivane {

ImageIndex LumivaneView::nextImageIndex(ImageIndex current) {
  if (settings_.dontRandomize_) {
    if (history_.stepsBack() != 0) {
      // The order goes on after the newest picture, not after the one that was stepped back to.
      current = history_.newest().index;
      history_.returnToNewest();
    }
    return ImageOrder::nextInListOrder(current, imagefiles_.size());
  }
  if (const auto next = order_.nextAtRandom(imagefiles_.size())) return *next;
  logAndDisplayMessage("All images displayed. Starting over.", false);
  order_.refill(imagefiles_.size());
  return order_.nextAtRandom(imagefiles_.size()).value_or(0);
}

void LumivaneView::startNewCycle() {
  lastFrameTime_ = host_.clock.now() - std::chrono::seconds(settings_.durationPerImage_);
}

// The frame that rebuilds the picture on screen for another window size does not count for it.
void LumivaneView::askForOtherPicture() {
  otherPictureAskedFor_ = true;
  startNewCycle();
}

void LumivaneView::startNewCycleWithFreshImageList() {
  startNewCycle();
  prefetch_.empty();
  history_.clearAtNextStore();
  displayMessage("Loading ..", std::nullopt);
}

}  // namespace lumivane

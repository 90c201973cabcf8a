// The picture after this one, decoded ahead of time on the prefetch queue.
//
// Everything but the reading of the file happens on the main thread: a try is chosen here, decoded there, and its outcome
// comes back through the main loop. So nothing is shared, and the main thread never waits.
#include <algorithm>
#include <utility>

#include "engine/LumivaneView.h"
#include "imaging/LongestSide.h"
#include "imaging/PanAndZoom.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

// Long enough for a change to settle before the machine is busy with the next picture.
constexpr std::chrono::seconds kPrefetchDelay{2};
constexpr double kPrefetchLayerZPosition = -10;

// On the queue, too: the file may lie on a disk that does not answer.
void tellWhyInaccessible(const Files& files, LoadOutcome& outcome) {
  for (LoadMessage& message : outcome.messages) {
    if (message.kind == LoadMessage::Kind::FileAccessError)
      message = {LoadMessage::Kind::LogError, fileAccessText(files, message.with), {}};
  }
}

SizePt larger(SizePt a, SizePt b) {
  return {std::max(a.width, b.width), std::max(a.height, b.height)};
}

// As large as the picture can get when it is shown: the compositor takes up what of it can be seen then, and no more.
void makeRoomForShowing(LayerProperties& layer, const DisplaySettings& settings, SizePt screen) {
  const SizePx picture = layer.contents->displaySize();
  const BlackBorderSettings borders{settings.allowBlackBorders_, settings.blackBorderAvoidance_};
  bool fillsScreen = false;
  if (settings.zoomIsOn_) {
    const PlainZoom zoom =
        nextPlainZoom(picture.width, picture.height, screen, borders, settings.initZoomInFactor_, false);
    layer.bounds.size = larger(zoom.fromSize, zoom.toSize);
    fillsScreen = zoom.fillsScreen;
  } else if (settings.kenBurnsIsOn_) {
    layer.bounds.size =
        largestPanAndZoom(static_cast<float>(picture.width), static_cast<float>(picture.height), screen);
  } else {
    fillsScreen = !allowBlackBordersWidth(picture.width, picture.height, screen, borders);
  }
  if (fillsScreen) layer.contentsGravity = ContentsGravity::ResizeAspectFill;
}

}  // namespace

void LumivaneView::schedulePrefetch() {
  const std::uint64_t request = ++prefetch_.request;
  host_.mainLoop.after(kPrefetchDelay, whileAlive([this, request] {
                         if (request == prefetch_.request) loadNextImage();
                       }));
}

void LumivaneView::loadNextImage() {
  if (imagefiles_.empty() || !prefetch_queue_ || prefetch_.prefetchNextImageRunning_) return;
  // A step in the history that the next frame takes decides what comes after it.
  if (displayImageFromHistory_) return schedulePrefetch();
  if (prefetch_.full()) return;  // a due picture came and was not shown yet; it would be lost from this pass
  prefetch_.prefetchNextImageRunning_ = true;
  prefetch_.empty();
  prefetch_.prefetchNextImageFailed_ = false;
  prefetch_.prefetch_img_index_ = img_index_;
  tryNextPrefetch(kPrefetchTries);
}

void LumivaneView::tryNextPrefetch(int triesLeft) {
  prefetch_.prefetch_img_index_ = nextImageIndex(prefetch_.prefetch_img_index_);
  loadOnQueue(pathAt(prefetch_.prefetch_img_index_),
              [this, triesLeft](LoadOutcome outcome) { prefetchAnswered(std::move(outcome), triesLeft); });
}

// The job may outlive the view, but not the decoder, the files and the main loop, which belong to the host.
void LumivaneView::loadOnQueue(const std::string& path, std::function<void(LoadOutcome outcome)> answered) {
  prefetch_queue_->async([&decoder = host_.decoder, &files = host_.files, &mainLoop = host_.mainLoop,
                          alive = std::weak_ptr(alive_), this, path, limits = loadLimits(),
                          answered = std::move(answered), generation = listGeneration_] {
    auto outcome = std::make_shared<LoadOutcome>(loadPicture(decoder, path, limits));
    tellWhyInaccessible(files, *outcome);
    mainLoop.post([alive, this, outcome, answered, generation] {
      if (!alive.expired() && generation == listGeneration_) answered(std::move(*outcome));
    });
  });
}

void LumivaneView::prefetchAnswered(LoadOutcome outcome, int triesLeft) {
  tell(outcome.messages);
  if (!outcome.picture && triesLeft > 1 && !imagefiles_.empty()) {
    tryNextPrefetch(triesLeft - 1);
    return;
  }
  if (outcome.picture) {
    acceptPrefetched(std::move(*outcome.picture));
  } else {
    prefetch_.prefetchNextImageFailed_ = true;
  }
  prefetch_.prefetchNextImageRunning_ = false;
}

// What the queue still brings belongs to another list, and nobody waits for it.
void LumivaneView::abandonPrefetch() {
  ++listGeneration_;
  prefetch_.prefetchNextImageRunning_ = false;
}

// The hidden layer makes the compositor take the picture up before it is due.
void LumivaneView::acceptPrefetched(LoadedPicture picture) {
  removeFromMainLayer(prefetchLayer_);
  auto layer = makeImageLayer(picture.image, stage());
  layer->edit([this](LayerProperties& p) {
    p.zPosition = kPrefetchLayerZPosition;
    p.opacity = 0;
    makeRoomForShowing(p, settings_, drawRect_.size);
  });
  prefetchLayer_ = mainLayer_->addSublayerBelow(std::move(layer), textLayer_);
  prefetch_.fill(std::move(picture));
}

LoadLimits LumivaneView::loadLimits() const {
  const Result<std::int64_t> freeMB = host_.memory.freeAndReclaimableMB();
  return {settings_.excludeSize_, filename_,
          freeMB ? longestSideFor(freeMB.value()) : kThumbnailMaxPixelSize};
}

void LumivaneView::tell(const std::vector<LoadMessage>& messages) {
  for (const LoadMessage& message : messages) {
    switch (message.kind) {
      case LoadMessage::Kind::LogError:
        logMessage(message.text, true);
        break;
      case LoadMessage::Kind::DisplayError:
        displayErrorMessage(message.text, message.with);
        break;
      case LoadMessage::Kind::FileAccessError:
        break;  // was turned into the log's line where the file was touched
    }
  }
}

std::string LumivaneView::pathAt(ImageIndex index) const {
  return index < imagefiles_.size() ? std::string(imagefiles_[index]) : std::string();
}

}  // namespace lumivane

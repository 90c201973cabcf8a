// One change of picture: which one comes, how it is written about, how it moves, how it replaces the old one.
#include <cmath>
#include <utility>

#include "engine/FadeLength.h"
#include "engine/LumivaneView.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

// The information line follows a cross-dissolve when this much of it has passed.
constexpr double kInformationPartOfFade = 0.4;

}  // namespace

void LumivaneView::changePicture() {
  lastFrameTime_ = host_.clock.now();  // whatever happens below, the next attempt waits a full period
  if (!mainDirectoryLocation_) return;
  if (imagefiles_.empty()) {
    filename_.clear();
    logAndDisplayMessage("No images. Please choose directory other than ", printable(*mainDirectoryLocation_),
                         true);
    return;
  }
  const Seconds fade = fadeDuration();
  if (!choosePicture()) return;
  const ImageInfo info = readImageInfo();
  scheduleInformationLine(info, fade);
  putOnScreen(makePictureLayer(info), fade);
}

Seconds LumivaneView::fadeDuration() const {
  if (displayImageFromHistory_ || windowResizingHappened_) return kQuickFade;
  constexpr SheetControl kSlider = SheetControl::crossDissolveDurationSlider_;
  const SliderRange range = host_.configureSheet != nullptr ? host_.configureSheet->sliderRange(kSlider)
                                                            : kCrossDissolveDurationRange;
  return fadeLength(static_cast<double>(range.minimum), static_cast<double>(range.maximum),
                    static_cast<double>(settings_.crossDissolveDuration_));
}

// --- Which picture ---

bool LumivaneView::choosePicture() {
  if (std::exchange(windowResizingHappened_, false)) {
    // Nobody shall wait a period because the window was resized or moved meanwhile: not for the first picture, and not
    // for one that was asked for.
    const bool somethingToRebuild = current_image_ && current_image_props_;
    if (!somethingToRebuild || otherPictureAskedFor_) startNewCycle();
    return somethingToRebuild;
  }
  otherPictureAskedFor_ = false;
  host_.tables.shownFileByDisplay.erase(displayID_);
  if (displayImageFromHistory_) {
    showHistoryEntry();
  } else if (prefetch_.full()) {
    takePrefetchedPicture();
  } else {
    loadDuePicture();
    return false;
  }
  if (img_index_ < imagefiles_.size()) filename_ = imagefiles_[img_index_];
  host_.tables.shownFileByDisplay[displayID_] = filename_;
  return true;
}

void LumivaneView::showHistoryEntry() {
  ++pictureChanges_;
  const HistoryEntry& entry = history_.loadFromHistoryImage();
  current_image_ = entry.img;
  current_image_props_ = entry.props;
  current_image_path_ = entry.path;
  img_index_ = entry.index;
  displayImageFromHistory_ = false;
}

// A picture that is due and not in the slot is waited for, but by the queue: its disk may be slow, or gone. The frame
// after its answer shows it.
void LumivaneView::loadDuePicture() {
  if (prefetch_.prefetchNextImageFailed_) {
    displayErrorMessage("Several images in a row are gone!", "");
    prefetch_.prefetchNextImageFailed_ = false;
    return;
  }
  if (prefetch_.prefetchNextImageRunning_) {
    logMessage("Background thread still loading: " + printable(pathAt(prefetch_.prefetch_img_index_)), false);
    return;
  }
  if (!prefetch_queue_) return;
  prefetch_.prefetch_img_index_ = nextImageIndex(img_index_);
  const std::string path = pathAt(prefetch_.prefetch_img_index_);
  logMessage("Loading image in main thread: " + printable(path), false);
  prefetch_.prefetchNextImageRunning_ = true;
  loadOnQueue(path, [this, path, changesBefore = pictureChanges_](LoadOutcome outcome) {
    duePictureAnswered(std::move(outcome), path, changesBefore);
  });
}

// Whoever has stepped to another picture meanwhile sees that one for its time.
void LumivaneView::duePictureAnswered(LoadOutcome outcome, const std::string& path,
                                      std::uint64_t changesBefore) {
  const bool stillDue = pictureChanges_ == changesBefore;
  prefetch_.prefetchNextImageRunning_ = false;
  tell(outcome.messages);
  if (outcome.picture) {
    acceptPrefetched(std::move(*outcome.picture));
    if (stillDue) askForOtherPicture();
  } else if (stillDue) {
    displayErrorMessage("Image gone: ", printable(path));
    img_index_ = prefetch_.prefetch_img_index_;  // so that the next attempt goes past it
  }
}

void LumivaneView::takePrefetchedPicture() {
  ++pictureChanges_;
  current_image_ = std::move(prefetch_.prefetched_image_);
  prefetch_.empty();
  img_index_ = prefetch_.prefetch_img_index_;
  current_image_path_ = pathAt(img_index_);
  current_image_props_ = prefetch_.prefetch_image_props_;
  if (settings_.dontRandomize_) saveLastRunInfo();
  schedulePrefetch();
  history_.storeInHistoryImage(current_image_, current_image_props_, img_index_, current_image_path_);
}

// --- What is written about it ---

ImageInfo LumivaneView::readImageInfo() const {
  ImageInfo info = getImageInfosFrom(filename_, *current_image_props_, settings_.displayFilename_);
  if (info.orientation >= 5) std::swap(info.width, info.height);
  return info;
}

void LumivaneView::scheduleInformationLine(const ImageInfo& info, Seconds fade) {
  if (!settings_.crossDissolve_) {
    showInformationLine(info);
    return;
  }
  if (settings_.infoDelay_ > 0) printFilename(" ");
  // The path is the one current when the line comes up; what is written about it is what was read now.
  host_.mainLoop.after(wholeNanoseconds(fade * kInformationPartOfFade + Seconds{settings_.infoDelay_}),
                       whileAlive([this, info] { showInformationLine(info); }));
}

void LumivaneView::showInformationLine(const ImageInfo& info) {
  if (settings_.showImageInfo_) {
    displayFilename(filename_, info);
  } else {
    printFilename(filename_);
  }
}

// --- How it moves ---

PictureStage LumivaneView::stage() const {
  return {drawRect_, settings_.durationPerImage_, mediaNow()};
}

std::unique_ptr<Layer> LumivaneView::makePictureLayer(const ImageInfo& info) {
  const BlackBorderSettings borders{settings_.allowBlackBorders_, settings_.blackBorderAvoidance_};
  std::unique_ptr<Layer> layer;
  bool fillsScreen = false;
  if (settings_.zoomIsOn_) {
    const PlainZoom zoom =
        nextPlainZoom(info.width, info.height, drawRect_.size, borders, settings_.initZoomInFactor_, zoomIn_);
    zoomIn_ = zoom.zoomIn;
    fillsScreen = zoom.fillsScreen;
    layer = makeImageLayer(current_image_, zoom.fromSize, zoom.toSize, stage());
  } else if (settings_.kenBurnsIsOn_) {
    return makeImageLayerWithKenBurns(current_image_, static_cast<float>(info.width),
                                      static_cast<float>(info.height), stage(), host_.random, host_.log);
  } else {
    layer = makeImageLayer(current_image_, stage());
    fillsScreen = !allowBlackBordersWidth(info.width, info.height, drawRect_.size, borders);
  }
  if (fillsScreen)
    layer->edit([](LayerProperties& p) { p.contentsGravity = ContentsGravity::ResizeAspectFill; });
  return layer;
}

// --- How it replaces the old one ---

void LumivaneView::putOnScreen(std::unique_ptr<Layer> layer, Seconds fade) {
  if (settings_.crossDissolve_) {
    fadeInto(std::move(layer), fade);
  } else {
    cutTo(std::move(layer));
  }
}

void LumivaneView::fadeInto(std::unique_ptr<Layer> layer, Seconds fade) {
  actual_fading_duration_ = fade;
  layer->addAnimation(makeOpacityAnimWithDuration(fade, 0, 1), kFadeInAnimKey, mediaNow());
  if (pauseZooming_) resumeAnimation();
  removeFromMainLayer(formerLayer_);
  formerLayer_ = currentLayer_;
  BasicAnimation fadeOut = makeOpacityAnimWithDuration(fade - kFadeOutLead, 1, 0);
  fadeOut.didStop = [this](bool finished) {
    if (finished) removeFromMainLayer(formerLayer_);
  };
  formerLayer_->addAnimation(std::move(fadeOut), kFadeOutAnimKey, mediaNow());
  currentLayer_ = mainLayer_->addSublayerBelow(std::move(layer), textLayer_);
}

void LumivaneView::cutTo(std::unique_ptr<Layer> layer) {
  actual_fading_duration_ = Seconds{0};
  replaceCurrentLayer(std::move(layer));
  removeFromMainLayer(formerLayer_);
}

void LumivaneView::replaceCurrentLayer(std::unique_ptr<Layer> layer) {
  Layer* const shown = layer.get();
  mainLayer_->replaceSublayer(currentLayer_, std::move(layer));
  currentLayer_ = shown;
}

void LumivaneView::removeFromMainLayer(Layer*& layer) {
  if (layer != nullptr) mainLayer_->removeSublayer(layer);
  layer = nullptr;
}

}  // namespace lumivane

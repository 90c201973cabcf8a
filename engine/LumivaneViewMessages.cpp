// What the view says: in the log, on the screen, or in both.
#include <utility>

#include "engine/LumivaneView.h"
#include "imaging/InformationText.h"

namespace lumivane {
namespace {

// An error stands on the screen for about this long.
constexpr std::int32_t kErrorSeconds = 3;
constexpr std::int32_t kShortestShortenedPeriod = 4;

}  // namespace

void LumivaneView::logMessage(std::string_view text, bool asError) {
  host_.log.write(text, asError ? LogLevel::Error : LogLevel::Information);
}

void LumivaneView::logAndDisplayMessage(const std::string& text, bool asError) {
  displayMessage(text, std::nullopt);
  errmsgIsError_ = asError;
  if (!errmesg_.empty()) logMessage(errmesg_, asError);
}

void LumivaneView::logAndDisplayMessage(const std::string& text, const std::string& with, bool asError) {
  logAndDisplayMessage(text + with, asError);
}

void LumivaneView::displayErrorMessage(const std::string& text, const std::string& with) {
  logAndDisplayMessage(text, with, true);
  replaceCurrentLayer(std::make_unique<Layer>());  // the message stands on black
  if (settings_.durationPerImage_ >= kShortestShortenedPeriod) {
    lastFrameTime_ = host_.clock.now() + std::chrono::seconds(kErrorSeconds - settings_.durationPerImage_);
  }
}

void LumivaneView::displayMessage(const std::optional<std::string>& firstLine,
                                  const std::optional<std::string>& secondLine) {
  errmesg_ = firstLine.value_or(" ");
  errmsgIsError_ = false;
  infoLine_ = secondLine && !secondLine->empty() ? secondLine : std::nullopt;
  refreshTextLayer();
}

void LumivaneView::printFilename(const std::string& path, const std::optional<std::string>& info) {
  logMessage(loggedFilename(path), false);  // the record of which picture was shown
  displayMessage(shownFilename(path, {settings_.displayFilename_, settings_.showImagePath_,
                                      settings_.showFileExtension_}),
                 info);
}

void LumivaneView::displayFilename(const std::string& path, const ImageInfo& info) {
  informationOf_ = path;
  img_description_ = imageDescription(path, info.caption, info.keywords);
  img_place_.reset();
  if (info.latitude != 0 || info.longitude != 0) {
    img_place_ = coordinatesText(info.latitude, info.longitude);
    requestPlace(info.latitude, info.longitude);
  }
  img_date_.reset();
  if (info.date) img_date_ = trimmed(*info.date);
  printFilename(path, informationLine(img_description_, img_place_, img_date_));
}

// What is known of another picture is not told again, and a message that stands where no picture is stays.
void LumivaneView::refreshTextLines() {
  if (!filename_.empty() && settings_.showImageInfo_ && informationOf_ == filename_) {
    printFilename(filename_, informationLine(img_description_, img_place_, img_date_));
  } else if (!filename_.empty()) {
    printFilename(filename_);
  }
  refreshTextLayer();
}

void LumivaneView::refreshTextLayer() {
  shownText_ = screenText(errmesg_, infoLine_, {muteTextDisplay_, blankScreen_, paused_, pauseZooming_});
  makeTextLayerRectangle(*textLayer_, settings_.fontSize_, shownText_, true);
}

void LumivaneView::makeTextLayerRectangle(Layer& layer, double fontSizePt, std::string_view text,
                                          bool adjustWidth) {
  LayerText& shown = &layer == help_layer_ ? shownHelp_ : shownInformation_;
  shown.set(layer, host_.text,
            {std::string(text), fontSizePt, drawRect_.size, adjustWidth, settings_.showImagePath_},
            contentsScale_);
}

Job LumivaneView::whileAlive(Job job) const {
  return [alive = std::weak_ptr(alive_), job = std::move(job)] {
    if (!alive.expired()) job();
  };
}

}  // namespace lumivane

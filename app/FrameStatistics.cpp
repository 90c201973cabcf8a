#include "app/FrameStatistics.h"

#include <nlohmann/json.hpp>

namespace lumivane {
namespace {

double milliseconds(Nanoseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

}  // namespace

void FrameStatistics::frameShown(const ShownFrame& frame) {
  ++frames_;
  if (frame.longestUpload > Nanoseconds{}) ++uploads_;
  longestUpload_ = std::max(longestUpload_, frame.longestUpload);
  if (!firstFrame_) firstFrame_ = frame.shown;
  if (!firstPicture_ && frame.pictures > 0) firstPicture_ = frame.shown;
  countInterval(frame);
  last_ = frame;
}

void FrameStatistics::countInterval(const ShownFrame& frame) {
  if (!last_ || !last_->moving) return;
  const Nanoseconds interval = frame.shown - last_->shown;
  intervals_.add(interval);
  if (Seconds(interval) <= 1.5 * frame.refreshInterval) return;
  ++(frame.changing() ? lateWhilePicturesChange_ : lateWhileOneStands_);
}

void FrameStatistics::mainThreadAnswered(Nanoseconds delay) {
  answers_.add(delay);
}

void FrameStatistics::pictureDecoded(Nanoseconds time) {
  const std::lock_guard lock(mutex_);
  decodes_.add(time);
}

std::string FrameStatistics::text(MediaTime end, const PeakMemory& peakMemory) const {
  nlohmann::ordered_json told;
  told["framesDrawn"] = frames_;
  told["secondsShown"] = firstFrame_ ? Seconds(end - *firstFrame_).count() : 0.0;
  told["frameIntervals"] = {{"count", intervals_.count()},
                            {"median", milliseconds(intervals_.quantile(0.5))},
                            {"percentile99", milliseconds(intervals_.quantile(0.99))},
                            {"percentile99.9", milliseconds(intervals_.quantile(0.999))},
                            {"maximum", milliseconds(intervals_.maximum())}};
  told["lateFrames"] = {{"whileAPictureStands", lateWhileOneStands_},
                        {"whilePicturesChange", lateWhilePicturesChange_}};
  told["uploads"] = {{"framesAfterSome", uploads_}, {"longestSlice", milliseconds(longestUpload_)}};
  told["startToFirstPicture"] =
      firstPicture_ ? nlohmann::ordered_json(milliseconds(*firstPicture_ - processStart_)) : nullptr;
  told["mainThreadAnswers"] = {{"count", answers_.count()},
                               {"percentile99.9", milliseconds(answers_.quantile(0.999))},
                               {"maximum", milliseconds(answers_.maximum())}};
  {
    const std::lock_guard lock(mutex_);
    told["decodes"] = {{"count", decodes_.count()},
                       {"median", milliseconds(decodes_.quantile(0.5))},
                       {"percentile99", milliseconds(decodes_.quantile(0.99))},
                       {"maximum", milliseconds(decodes_.maximum())}};
  }
  told["peakMemoryBytes"] = peakMemory.programBytes;
  told["decoderPeakMemoryBytes"] = peakMemory.decoderBytes;
  return told.dump(2) + "\n";
}

}  // namespace lumivane

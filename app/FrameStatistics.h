// How smoothly the show ran, counted from its first frame to its last and written down when the program ends.
//
// Threads: frames are told on the render thread, answers of the main loop on the main thread, decodes on any; text() once
//          render and main thread have ended. Each side has fields of its own.
// Units:   media time; bytes. A frame is late when it comes more than one and a half refresh intervals after the one before,
//          while something moves.
// Errors:  none.
#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>

#include "app/IntervalHistogram.h"
#include "compositor/render/FrameWatcher.h"

namespace lumivane {

// The most memory that was resident at once. The pixels of pictures lie in memory that both share, and count in both.
struct PeakMemory {
  std::size_t programBytes = 0;
  std::size_t decoderBytes = 0;  // of the largest decoder process
};

class FrameStatistics final : public FrameWatcher {
 public:
  // `processStart`: from when the time to the first picture counts.
  explicit FrameStatistics(MediaTime processStart) : processStart_(processStart) {}

  void frameShown(const ShownFrame& frame) override;
  // How long the main thread took to answer.
  void mainThreadAnswered(Nanoseconds delay);
  // How long a picture took from the question for it until its pixels were there, the other process included.
  void pictureDecoded(Nanoseconds time);

  // One JSON object, times in milliseconds but for the seconds shown.
  [[nodiscard]] std::string text(MediaTime end, const PeakMemory& peakMemory) const;

 private:
  void countInterval(const ShownFrame& frame);

  const MediaTime processStart_;

  // The render thread's
  std::optional<ShownFrame> last_;
  std::optional<MediaTime> firstFrame_;
  std::optional<MediaTime> firstPicture_;
  std::uint64_t frames_ = 0;
  std::uint64_t uploads_ = 0;
  Nanoseconds longestUpload_{};
  IntervalHistogram intervals_;  // while something moves
  std::uint64_t lateWhileOneStands_ = 0;
  std::uint64_t lateWhilePicturesChange_ = 0;

  // The main thread's
  IntervalHistogram answers_;

  mutable std::mutex mutex_;
  IntervalHistogram decodes_;  // guarded by mutex_
};

}  // namespace lumivane

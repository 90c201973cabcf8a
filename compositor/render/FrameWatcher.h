// Is told of every frame that was shown.
//
// Threads: render only; it must be quick, the next frame waits for it.
// Units:   media time of the render thread's clock.
// Errors:  none.
#pragma once

#include <cstddef>

#include "platform/Clock.h"

namespace lumivane {

struct ShownFrame {
  MediaTime begun{};          // when the work on it began
  MediaTime shown{};          // when it was handed to the display
  Seconds refreshInterval{};  // of the display it is on
  bool moving = false;        // the next one is to follow at once
  Nanoseconds
      longestUpload{};  // the longest stretch of sending textures since the frame before; 0 = there was none
  std::size_t pictures = 0;     // how many are seen in it; two in a dissolve
  bool anotherPicture = false;  // the topmost is not that of the frame before

  [[nodiscard]] bool changing() const { return pictures > 1 || anotherPicture; }
};

class FrameWatcher {
 public:
  virtual ~FrameWatcher() = default;
  virtual void frameShown(const ShownFrame& frame) = 0;
};

}  // namespace lumivane

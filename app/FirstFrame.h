// Tells the main thread once that the window shows something: from then on dialogs can lie over it.
//
// Threads: made on the main thread; told on the render thread; the action runs on the main thread.
// Errors:  none; nothing is told while nothing can be drawn.
#pragma once

#include <functional>
#include <utility>

#include "compositor/render/FrameWatcher.h"
#include "platform/MainLoop.h"

namespace lumivane {

class FirstFrame final : public FrameWatcher {
 public:
  // Passes every frame on to `next` (may be nullptr). Requires: what the action uses is there as long as the main loop
  // runs.
  FirstFrame(MainLoop& mainLoop, std::function<void()> action, FrameWatcher* next)
      : mainLoop_(mainLoop), action_(std::move(action)), next_(next) {}

  void frameShown(const ShownFrame& frame) override {
    if (action_) mainLoop_.post(std::exchange(action_, nullptr));
    if (next_ != nullptr) next_->frameShown(frame);
  }

 private:
  MainLoop& mainLoop_;
  std::function<void()> action_;  // the render thread's
  FrameWatcher* const next_;
};

}  // namespace lumivane

// Takes the mouse pointer off the picture when it has rested for a while, and brings it back when it moves.
//
// Threads: main only.
// Owns:    nothing; window and main loop outlive it.
// Units:   media time.
// Errors:  none.
#pragma once

#include <memory>

#include "platform/Clock.h"
#include "platform/MainLoop.h"
#include "platform/Window.h"

namespace lumivane {

class PointerHiding {
 public:
  static constexpr std::chrono::seconds kRest{3};

  // The pointer counts as just having moved. The window reports the mouse from now on.
  PointerHiding(HostWindow& window, const Clock& clock, MainLoop& mainLoop);

  void mouseMoved();
  // Hides the pointer at once and for good: for a show that stands in for the screen saver.
  void hideForGood();

 private:
  void watch(Nanoseconds wait);
  void look();

  HostWindow& window_;
  const Clock& clock_;
  MainLoop& mainLoop_;
  MediaTime lastMove_;
  bool watching_ = false;  // one look is due, however often the mouse moves until then
  bool hidden_ = false;
  bool forGood_ = false;
  std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace lumivane

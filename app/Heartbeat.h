// Calls the frame loop whenever it has something to do, at most 50 times a second, so that a show that stands still costs
// nothing.
//
// What the frame loop waits for can only change in a turn of the main loop; so it is asked at the end of each.
//
// Threads: main only.
// Owns:    nothing. Nothing beats any more once it is destroyed.
// Units:   media time.
// Errors:  none.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/Clock.h"
#include "platform/MainLoop.h"

namespace lumivane {

class Heartbeat {
 public:
  // When the next beat is wanted; nothing: not before something else happens. Times that have passed mean at once.
  using Wanted = std::function<std::optional<MediaTime>()>;

  Heartbeat(MainLoop& mainLoop, const Clock& clock, Wanted wanted, Job beat);

  // At the end of a turn of the main loop.
  void turnEnded();

 private:
  // The first moment from then on that is a whole number of frames after the last beat.
  [[nodiscard]] MediaTime inStep(MediaTime wanted) const;
  void beatAt(MediaTime time);

  MainLoop& mainLoop_;
  const Clock& clock_;
  const Wanted wanted_;
  const Job beat_;
  MediaTime lastBeat_;
  std::optional<MediaTime> next_;
  std::shared_ptr<bool> watch_;  // expires when another moment is waited for, or none
};

}  // namespace lumivane

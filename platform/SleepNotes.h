// Tells when the machine is about to sleep, and when its screens go dark or are covered by a screen saver.
//
// Threads: main only.
// Errors:  none; where nobody tells us, nothing is told.
#pragma once

#include <functional>

namespace lumivane {

class SleepNotes {
 public:
  virtual ~SleepNotes() = default;
  // From now on the job runs on the main loop at every such moment, until this object goes.
  virtual void observe(std::function<void()> onSleep) = 0;
};

}  // namespace lumivane

// The main thread's loop, as the slideshow sees it: jobs now, jobs later, jobs again and again.
//
// Threads: post() from any thread; everything else main only. All jobs run on the main thread.
// Owns:    the jobs that have not run yet; they are dropped when the loop ends.
// Units:   delays in nanoseconds of media time.
// Errors:  none.
#pragma once

#include <functional>
#include <memory>

#include "platform/Clock.h"

namespace lumivane {

using Job = std::function<void()>;

// A repeating job; destroying it stops the repetition.
class Timer {
 public:
  virtual ~Timer() = default;
};

class MainLoop {
 public:
  virtual ~MainLoop() = default;

  // Runs the job on the main thread, soon, in the order of posting.
  virtual void post(Job job) = 0;

  // Runs the job once, when the delay has passed. A job must not assume that its maker still lives.
  virtual void after(Nanoseconds delay, Job job) = 0;

  // Runs the job every interval, late by at most the tolerance when the loop is free.
  [[nodiscard]] virtual std::unique_ptr<Timer> every(Nanoseconds interval, Nanoseconds tolerance,
                                                     Job job) = 0;
};

}  // namespace lumivane

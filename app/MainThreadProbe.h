// Asks the main loop again and again how quickly it answers: what it takes longer for, the user waits for.
//
// Threads: made and destroyed on the main thread; asks on a thread of its own, tells on the main thread.
// Owns:    its thread.
// Units:   nanoseconds of the clock. A block is told to be shorter than it was by up to kPause.
// Errors:  none.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

#include "platform/Clock.h"
#include "platform/MainLoop.h"

namespace lumivane {

class MainThreadProbe {
 public:
  static constexpr std::chrono::milliseconds kPause{5};
  using Answered = std::function<void(Nanoseconds delay)>;

  // The clock and the main loop must outlive the probe, and what `answered` uses the main loop.
  MainThreadProbe(MainLoop& mainLoop, const Clock& clock, Answered answered);

 private:
  // Shared with the jobs that the loop has not run yet.
  struct Question {
    std::mutex mutex;
    std::condition_variable_any changed;
    bool open = false;  // guarded by mutex
  };
  void ask(const std::stop_token& stop);

  MainLoop& mainLoop_;
  const Clock& clock_;
  const Answered answered_;
  const std::shared_ptr<Question> question_ = std::make_shared<Question>();
  std::jthread thread_;  // last: ends before what it uses
};

}  // namespace lumivane

// Ends a call of GLib's libraries that takes too long, or whose result is no longer wanted.
//
// Threads: one thread sets the limit and makes the calls.
// Owns:    the cancellable, and a thread that watches the clock.
// Errors:  a call that was ended says so with an error of its own; hasPassed() tells the two reasons apart.
#pragma once

#include <gio/gio.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

#include "platform/linux/index/GioHandles.h"

namespace lumivane {

class TimeLimit {
 public:
  TimeLimit(std::chrono::milliseconds limit, std::stop_token stop);
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;

  // Handed to every call.
  [[nodiscard]] GCancellable* cancellable() const { return cancellable_.get(); }
  // From now on there is this much time again, unless it was over already.
  void restart(std::chrono::milliseconds limit);
  [[nodiscard]] bool hasPassed() const;
  // Waits a little: false when time is over or a stop was requested.
  [[nodiscard]] bool waitFor(std::chrono::milliseconds time);

 private:
  using Steady = std::chrono::steady_clock;

  void watch(const std::stop_token& end);

  const GioRef<GCancellable> cancellable_;

  mutable std::mutex mutex_;
  std::condition_variable_any changed_;
  Steady::time_point deadline_;  // guarded by mutex_
  bool passed_ = false;          // guarded by mutex_

  struct Cancel {
    GCancellable* cancellable;
    void operator()() const { g_cancellable_cancel(cancellable); }
  };
  std::stop_callback<Cancel> whenStopped_;
  std::jthread watcher_;  // last: it ends before what it uses
};

}  // namespace lumivane

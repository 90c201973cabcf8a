// The main thread's loop on Qt's event loop.
//
// Threads: as in MainLoop.h; made and destroyed on the main thread, after QCoreApplication and before it. Whoever
//          posts from another thread must have stopped doing so before the loop is destroyed.
// Owns:    the jobs that have not run yet.
// Units:   delays are rounded up to whole milliseconds; Qt's timers stand still while the machine is suspended.
// Errors:  an exception that leaves a job is logged, and the loop goes on; the log must outlive the loop.
#pragma once

#include <QObject>
#include <deque>
#include <mutex>

#include "platform/Log.h"
#include "platform/MainLoop.h"

namespace lumivane {

class QtMainLoop final : public MainLoop {
 public:
  explicit QtMainLoop(Log& log);

  void post(Job job) override;
  void after(Nanoseconds delay, Job job) override;
  [[nodiscard]] std::unique_ptr<Timer> every(Nanoseconds interval, Nanoseconds tolerance, Job job) override;

  // Runs the job at the end of every turn of the loop, when all that was pending is done and the loop is about to
  // wait: the place to hand over what the turn has changed. Requires: the job is cheap when nothing changed.
  void atEndOfTurn(Job job);

 private:
  void perform(const Job& job);
  void performPosted();

  Log& log_;
  // Handed over under a lock of our own: those inside Qt are nothing that ThreadSanitizer could see.
  std::mutex mutex_;
  std::deque<Job> posted_;  // guarded by mutex_
  QObject receiver_;        // last: what was posted to it goes with it
};

// How exact a timer must be: sloppy ones are grouped by the system, up to a twentieth of their interval off.
[[nodiscard]] Qt::TimerType timerTypeFor(Nanoseconds interval, Nanoseconds tolerance);

}  // namespace lumivane

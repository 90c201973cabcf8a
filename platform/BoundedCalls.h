// Runs what may never end, such as a question to a disk that is gone, and waits for it only so long.
//
// Threads: runWithin() main only; the job runs on a thread of its own.
// Owns:    the jobs that have not ended yet; destruction waits for them.
// Units:   real time, not that of a test's clock.
// Errors:  an exception that leaves a job is logged; the job then counts as ended.
#pragma once

#include "platform/Clock.h"
#include "platform/MainLoop.h"

namespace lumivane {

class BoundedCalls {
 public:
  virtual ~BoundedCalls() = default;
  // Whether the job has ended in time. One that has not goes on by itself: it must own all that it uses, or outlive it.
  [[nodiscard]] virtual bool runWithin(Nanoseconds limit, Job job) = 0;
};

}  // namespace lumivane

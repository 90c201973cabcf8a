// Calls with a time limit, each on a thread of its own.
//
// Threads: as in BoundedCalls.h.
// Owns:    the threads of the calls that have not ended yet.
// Errors:  as in BoundedCalls.h. Where no thread can be had, the job runs here and is waited for.
#pragma once

#include <list>
#include <memory>
#include <thread>

#include "platform/BoundedCalls.h"
#include "platform/Log.h"

namespace lumivane {

class ThreadBoundedCalls final : public BoundedCalls {
 public:
  explicit ThreadBoundedCalls(Log& log) : log_(log) {}
  [[nodiscard]] bool runWithin(Nanoseconds limit, Job job) override;
  [[nodiscard]] std::size_t callsUnderWay();

 private:
  struct Call;
  struct Running {
    std::shared_ptr<Call> call;
    std::jthread thread;
  };

  void forgetEnded();

  Log& log_;
  std::list<Running> running_;
};

}  // namespace lumivane

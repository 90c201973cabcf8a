// A background queue that runs its jobs one after the other on a thread of its own.
//
// Threads: async() from any thread; jobs run on the queue's thread.
// Owns:    its thread; destruction waits for the running job and drops the ones not yet begun.
// Errors:  an exception that leaves a job is logged, and the queue goes on.
#pragma once

#include <memory>
#include <string>

#include "platform/MainLoop.h"

namespace lumivane {

class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  virtual void async(Job job) = 0;
};

class SerialQueues {
 public:
  virtual ~SerialQueues() = default;
  // The name is what debuggers show for the thread.
  [[nodiscard]] virtual std::unique_ptr<SerialQueue> make(const std::string& name) = 0;
};

}  // namespace lumivane

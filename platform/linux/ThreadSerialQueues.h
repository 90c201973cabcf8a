// Serial queues that are a thread each.
//
// Threads: as in SerialQueue.h. A queue must not be destroyed by a job of its own.
// Owns:    each queue its thread.
// Errors:  as in SerialQueue.h; the log must outlive the queues.
#pragma once

#include "platform/Log.h"
#include "platform/SerialQueue.h"

namespace lumivane {

class ThreadSerialQueues final : public SerialQueues {
 public:
  explicit ThreadSerialQueues(Log& log) : log_(log) {}
  // Debuggers show the name's first 15 bytes.
  [[nodiscard]] std::unique_ptr<SerialQueue> make(const std::string& name) override;

 private:
  Log& log_;
};

}  // namespace lumivane

// A program of ours that runs as a process of its own, and the line of messages to it.
//
// Threads: a ChildProgram is used by one thread at a time; ChildPrograms by any.
// Owns:    the process: destruction ends it at once and waits for nothing, whatever state it is in.
// Units:   a message is at most kLongestMessage bytes.
// Errors:  start() says why there is no process; a line that broke says Gone from then on.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "platform/Clock.h"
#include "platform/Result.h"
#include "platform/SharedMemory.h"

namespace lumivane {

inline constexpr std::size_t kLongestMessage = std::size_t{1} << 20;

enum class MessageArrival {
  Message,  // a whole one
  Nothing,  // not yet; a part of one may have come
  Gone,     // there is nobody at the other end, or what came breaks the rules
};

class ChildProgram {
 public:
  virtual ~ChildProgram() = default;

  // Hands over a message and, with it, a piece of memory to write into. Never waits: a child that leaves its messages
  // lying is as good as gone, which is false.
  [[nodiscard]] virtual bool send(std::span<const std::byte> message, const SharedMemory* lent = nullptr) = 0;

  // Waits for the next message, at most this long; may come back with Nothing earlier.
  [[nodiscard]] virtual MessageArrival receive(std::vector<std::byte>& message, Nanoseconds patience) = 0;
};

class ChildPrograms {
 public:
  virtual ~ChildPrograms() = default;
  // The process is started, not yet heard of.
  [[nodiscard]] virtual Result<std::unique_ptr<ChildProgram>> start() = 0;
  // How many were told to end and have not: a process that waits for a dead disk cannot.
  [[nodiscard]] virtual std::size_t ending() = 0;
};

}  // namespace lumivane

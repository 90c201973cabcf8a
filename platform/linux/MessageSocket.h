// Whole messages over a socket between two processes, each in packets, with a file descriptor beside it where wanted.
//
// Threads: a socket's messages are received by one thread, and sent by one.
// Owns:    the parts of a message that came so far; the socket belongs to the caller.
// Units:   bytes; a message is at most kLongestMessage.
// Errors:  told as MessageArrival; what breaks the rules of packets counts as Gone.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "platform/ChildProgram.h"
#include "platform/linux/FileDescriptor.h"

namespace lumivane {

enum class Waiting { Never, AsLongAsItTakes };

// False when nobody is at the other end or, with Never, when it does not read. -1: no descriptor goes along.
[[nodiscard]] bool sendMessage(int socket, std::span<const std::byte> message, int descriptor,
                               Waiting waiting);

class MessageReceiver {
 public:
  enum class Descriptors { Refused, Taken };
  MessageReceiver(int socket, Descriptors descriptors) : socket_(socket), descriptors_(descriptors) {}

  // Takes one packet at most, so that a peer that sends crumbs cannot hold its caller. No patience given: waits.
  [[nodiscard]] MessageArrival receive(std::vector<std::byte>& message, std::optional<Nanoseconds> patience);

  // The descriptor that came with the last message; not open when there was none.
  [[nodiscard]] FileDescriptor takeDescriptor() { return std::move(descriptor_); }

 private:
  [[nodiscard]] MessageArrival take(std::vector<std::byte>& message);

  const int socket_;
  const Descriptors descriptors_;
  std::vector<std::byte> begun_;
  FileDescriptor descriptor_;
};

}  // namespace lumivane

// A child program that says what a test has it say, in virtual time, and shared memory that is shared with nobody.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/ChildProgram.h"
#include "tests/support/VirtualTime.h"

namespace lumivane {

class FakeMemories final : public SharedMemories {
 public:
  struct Memory final : SharedMemory {
    explicit Memory(std::size_t size) : content(size) {}
    [[nodiscard]] std::span<const std::byte> bytes() const override { return content; }
    std::vector<std::byte> content;
  };
  bool none = false;  // there is no memory
  int made = 0;

  [[nodiscard]] Result<std::unique_ptr<SharedMemory>> make(std::size_t bytes) override {
    if (none) return Error{"no memory"};
    ++made;
    return std::unique_ptr<SharedMemory>(std::make_unique<Memory>(bytes));
  }
};

// Children that answer each message through one function. What it hands back is received next; nothing is as a child that
// hangs; an empty message is as one that ends.
class FakeChildPrograms final : public ChildPrograms {
 public:
  using Message = std::vector<std::byte>;
  using Answer = std::function<std::vector<Message>(std::span<const std::byte>)>;

  FakeChildPrograms(VirtualClock& clock, Answer answer) : clock_(clock), answer_(std::move(answer)) {}

  std::vector<Message> greeting;  // what each child says by itself
  bool cannotStart = false;
  std::size_t endingNow = 0;
  int started = 0;
  int alive = 0;

  [[nodiscard]] Result<std::unique_ptr<ChildProgram>> start() override {
    if (cannotStart) return Error{"there is no such program"};
    ++started;
    return std::unique_ptr<ChildProgram>(std::make_unique<Child>(*this));
  }
  [[nodiscard]] std::size_t ending() override { return endingNow; }

 private:
  struct Child final : ChildProgram {
    explicit Child(FakeChildPrograms& programs)
        : all(programs), waiting(programs.greeting.begin(), programs.greeting.end()) {
      ++all.alive;
    }
    ~Child() override { --all.alive; }
    [[nodiscard]] bool send(std::span<const std::byte> message, const SharedMemory* /*lent*/) override {
      for (Message& said : all.answer_(message)) waiting.push_back(std::move(said));
      return true;
    }
    [[nodiscard]] MessageArrival receive(Message& message, Nanoseconds patience) override {
      if (waiting.empty()) {
        all.clock_.advance(patience);
        return MessageArrival::Nothing;
      }
      message = std::move(waiting.front());
      waiting.pop_front();
      return message.empty() ? MessageArrival::Gone : MessageArrival::Message;
    }
    FakeChildPrograms& all;
    std::deque<Message> waiting;
  };

  VirtualClock& clock_;
  Answer answer_;
};

}  // namespace lumivane

#include "collection/MainThreadQuestion.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <utility>

namespace lumivane {

struct MainThreadQuestion::State {
  std::mutex mutex_;
  std::condition_variable_any changed_;
  // Guarded by mutex_
  std::size_t question_ = 0;  // the number of the last question; replies to earlier ones are too late
  bool open_ = false;
  PermissionAnswer answer_;

  std::size_t openQuestion() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    answer_ = {};
    return ++question_;
  }

  [[nodiscard]] bool isOpen(std::size_t question) {
    const std::lock_guard lock(mutex_);
    return open_ && question == question_;
  }

  void close(std::size_t question, PermissionAnswer answer) {
    const std::lock_guard lock(mutex_);
    if (!open_ || question != question_) return;
    open_ = false;
    answer_ = std::move(answer);
    changed_.notify_all();
  }

  [[nodiscard]] PermissionAnswer waitForAnswer(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, stop, [this] { return !open_; });
    open_ = false;
    return answer_;
  }
};

namespace {

// Says no when the last holder of a reply drops it.
class DenialWhenDropped {
 public:
  explicit DenialWhenDropped(std::function<void(PermissionAnswer)> answer) : answer_(std::move(answer)) {}
  DenialWhenDropped(const DenialWhenDropped&) = delete;
  DenialWhenDropped& operator=(const DenialWhenDropped&) = delete;
  ~DenialWhenDropped() { answer_(PermissionAnswer{}); }
  void answer(PermissionAnswer answer) const { answer_(std::move(answer)); }

 private:
  std::function<void(PermissionAnswer)> answer_;
};

}  // namespace

MainThreadQuestion::MainThreadQuestion(MainLoop& mainLoop, Present present)
    : mainLoop_(mainLoop), present_(std::move(present)), state_(std::make_shared<State>()) {}

PermissionAnswer MainThreadQuestion::ask(const std::string& folder, const std::stop_token& stop) {
  const std::shared_ptr<State> state = state_;
  const std::size_t question = state->openQuestion();
  auto guard = std::make_shared<DenialWhenDropped>(
      [state, question](PermissionAnswer answer) { state->close(question, std::move(answer)); });
  mainLoop_.post([state, question, present = present_, folder, guard = std::move(guard)] {
    if (!state->isOpen(question)) return;
    present(folder, [guard](PermissionAnswer answer) { guard->answer(std::move(answer)); });
  });
  return state->waitForAnswer(stop);
}

}  // namespace lumivane

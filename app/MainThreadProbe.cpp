#include "app/MainThreadProbe.h"

#include <utility>

namespace lumivane {

MainThreadProbe::MainThreadProbe(MainLoop& mainLoop, const Clock& clock, Answered answered)
    : mainLoop_(mainLoop),
      clock_(clock),
      answered_(std::move(answered)),
      thread_([this](const std::stop_token& stop) { ask(stop); }) {}

void MainThreadProbe::ask(const std::stop_token& stop) {
  std::unique_lock lock(question_->mutex);
  while (!stop.stop_requested()) {
    question_->open = true;
    mainLoop_.post([question = question_, answered = answered_, &clock = clock_, asked = clock_.now()] {
      answered(clock.now() - asked);
      const std::lock_guard guard(question->mutex);
      question->open = false;
      question->changed.notify_all();
    });
    question_->changed.wait(lock, stop, [this] { return !question_->open; });
    question_->changed.wait_for(lock, stop, kPause, [] { return false; });
  }
}

}  // namespace lumivane

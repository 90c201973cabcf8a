#include "platform/linux/index/TimeLimit.h"

#include <utility>

namespace lumivane {

TimeLimit::TimeLimit(std::chrono::milliseconds limit, std::stop_token stop)
    : cancellable_(g_cancellable_new()),
      deadline_(Steady::now() + limit),
      whenStopped_(std::move(stop), Cancel{cancellable_.get()}),
      watcher_([this](const std::stop_token& end) { watch(end); }) {}

void TimeLimit::restart(std::chrono::milliseconds limit) {
  const std::scoped_lock lock(mutex_);
  const Steady::time_point deadline = Steady::now() + limit;
  const bool isEarlier = deadline < deadline_;
  deadline_ = deadline;
  if (isEarlier) changed_.notify_all();  // a later one is noticed when the watcher wakes up for the former
}

bool TimeLimit::hasPassed() const {
  const std::scoped_lock lock(mutex_);
  return passed_;
}

bool TimeLimit::waitFor(std::chrono::milliseconds time) {
  GPollFD ended{};
  if (g_cancellable_make_pollfd(cancellable_.get(), &ended) == FALSE) return false;
  g_poll(&ended, 1, static_cast<gint>(time.count()));
  g_cancellable_release_fd(cancellable_.get());
  return g_cancellable_is_cancelled(cancellable_.get()) == FALSE;
}

void TimeLimit::watch(const std::stop_token& end) {
  std::unique_lock lock(mutex_);
  while (!end.stop_requested()) {
    if (Steady::now() >= deadline_) {
      passed_ = true;
      lock.unlock();  // who waits for the cancellation may ask at once why
      g_cancellable_cancel(cancellable_.get());
      return;
    }
    const Steady::time_point until = deadline_;
    changed_.wait_until(lock, end, until, [&] { return deadline_ < until; });
  }
}

}  // namespace lumivane

#include "platform/linux/ThreadBoundedCalls.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <utility>

namespace lumivane {

struct ThreadBoundedCalls::Call {
  Job job;  // the call's thread only
  std::mutex mutex;
  std::condition_variable end;
  bool ended = false;  // guarded by mutex

  void run(Log& log) {
    try {
      job();
    } catch (const std::exception& failure) {
      log.error(std::string("A call with a time limit failed: ") + failure.what());
    }
    job = nullptr;  // what it owns goes before anybody takes it for ended
    const std::scoped_lock lock(mutex);
    ended = true;
    end.notify_all();
  }
  [[nodiscard]] bool hasEnded() {
    const std::scoped_lock lock(mutex);
    return ended;
  }
  [[nodiscard]] bool endsWithin(Nanoseconds limit) {
    std::unique_lock lock(mutex);
    return end.wait_for(lock, limit, [this] { return ended; });
  }
};

bool ThreadBoundedCalls::runWithin(Nanoseconds limit, Job job) {
  forgetEnded();
  const auto call = std::make_shared<Call>();
  call->job = std::move(job);
  try {
    running_.push_back({call, std::jthread([call, &log = log_] { call->run(log); })});
  } catch (const std::system_error&) {
    call->run(log_);
    return true;
  }
  return call->endsWithin(limit);
}

std::size_t ThreadBoundedCalls::callsUnderWay() {
  forgetEnded();
  return running_.size();
}

void ThreadBoundedCalls::forgetEnded() {
  running_.remove_if([](const Running& running) { return running.call->hasEnded(); });
}

}  // namespace lumivane

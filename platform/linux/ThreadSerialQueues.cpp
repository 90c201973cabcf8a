#include "platform/linux/ThreadSerialQueues.h"

#include <pthread.h>

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace lumivane {
namespace {

constexpr std::size_t kLongestThreadName = 15;

class ThreadSerialQueue final : public SerialQueue {
 public:
  ThreadSerialQueue(std::string name, Log& log)
      : name_(std::move(name)), log_(log), thread_([this](const std::stop_token& stop) { run(stop); }) {
    ::pthread_setname_np(thread_.native_handle(), name_.substr(0, kLongestThreadName).c_str());
  }

  void async(Job job) override {
    const std::scoped_lock lock(mutex_);
    jobs_.push_back(std::move(job));
    wake_.notify_one();
  }

 private:
  void run(const std::stop_token& stop) {
    while (std::optional<Job> job = nextJob(stop)) perform(*job);
  }

  // Waits for a job; absent when the queue is to end.
  std::optional<Job> nextJob(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    if (!wake_.wait(lock, stop, [this] { return !jobs_.empty(); }) || stop.stop_requested())
      return std::nullopt;
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    return job;
  }

  void perform(const Job& job) {
    try {
      job();
    } catch (const std::exception& exception) {
      log_.error(name_ + ": a job failed: " + exception.what());
    } catch (...) {
      log_.error(name_ + ": a job failed");
    }
  }

  // Constant after construction.
  const std::string name_;
  Log& log_;

  std::mutex mutex_;
  std::condition_variable_any wake_;

  // Guarded by mutex_.
  std::deque<Job> jobs_;

  std::jthread thread_;  // last: ends before what it uses
};

}  // namespace

std::unique_ptr<SerialQueue> ThreadSerialQueues::make(const std::string& name) {
  return std::make_unique<ThreadSerialQueue>(name, log_);
}

}  // namespace lumivane

// Virtual time for tests: a clock that stands until it is told to go on, a main loop that runs on it, and background
// queues whose jobs take as long as the test says.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/MainLoop.h"
#include "platform/SerialQueue.h"

namespace lumivane {

class VirtualClock final : public Clock {
 public:
  [[nodiscard]] MediaTime now() const override { return now_; }
  [[nodiscard]] WallTime wallTime() const override { return wall_; }
  void setNow(MediaTime now) {
    wall_ += std::chrono::duration_cast<WallTime::duration>(now - now_);
    now_ = now;
  }
  void advance(Nanoseconds by) { setNow(now_ + by); }
  void jumpWallTime(Nanoseconds by) { wall_ += std::chrono::duration_cast<WallTime::duration>(by); }

 private:
  MediaTime now_{std::chrono::seconds(1000)};
  WallTime wall_{std::chrono::seconds(1'800'000'000)};
};

class VirtualMainLoop final : public MainLoop {
 public:
  explicit VirtualMainLoop(VirtualClock& clock) : clock_(clock) {}

  // From another thread the job waits until the loop turns again.
  void post(Job job) override {
    if (std::this_thread::get_id() == owner_) {
      add(clock_.now(), Nanoseconds{0}, std::move(job), nullptr);
    } else {
      const std::lock_guard lock(mutex_);
      posted_.push_back(std::move(job));
      cameFromOutside_.notify_one();
    }
  }
  // Lets other threads work until one of them has posted something, or the time, which is real, is up.
  void letOthersWork(Nanoseconds atMost = std::chrono::milliseconds(1)) {
    std::unique_lock lock(mutex_);
    cameFromOutside_.wait_for(lock, atMost, [this] { return !posted_.empty(); });
  }
  void after(Nanoseconds delay, Job job) override {
    add(clock_.now() + delay, Nanoseconds{0}, std::move(job), nullptr);
  }
  [[nodiscard]] std::unique_ptr<Timer> every(Nanoseconds interval, Nanoseconds /*tolerance*/,
                                             Job job) override {
    auto stopped = std::make_shared<bool>(false);
    add(clock_.now() + interval, interval, std::move(job), stopped);
    return std::make_unique<StoppingTimer>(std::move(stopped));
  }

  // Runs everything that falls due until `span` has passed.
  void runFor(Nanoseconds span) {
    const MediaTime end = clock_.now() + span;
    takePosted();
    while (!jobs_.empty() && jobs_.front().due <= end) {
      runNext();
      takePosted();
    }
    clock_.setNow(std::max(end, clock_.now()));
  }
  Job turnEnded;  // runs after each job, if there is one
  [[nodiscard]] std::size_t waitingJobs() const { return jobs_.size(); }
  // Runs what is due now, and what that makes due now.
  void runPending() { runFor(Nanoseconds{0}); }

 private:
  struct StoppingTimer final : Timer {
    explicit StoppingTimer(std::shared_ptr<bool> flag) : stopped(std::move(flag)) {}
    ~StoppingTimer() override { *stopped = true; }
    std::shared_ptr<bool> stopped;
  };
  struct Scheduled {
    MediaTime due;
    std::uint64_t number = 0;
    Nanoseconds interval{0};
    Job job;
    std::shared_ptr<bool> stopped;
    bool operator<(const Scheduled& other) const {
      return due != other.due ? due > other.due : number > other.number;  // a heap with the earliest in front
    }
  };

  void add(MediaTime due, Nanoseconds interval, Job job, std::shared_ptr<bool> stopped) {
    jobs_.push_back({due, counter_++, interval, std::move(job), std::move(stopped)});
    std::push_heap(jobs_.begin(), jobs_.end());
  }

  void takePosted() {
    std::vector<Job> posted;
    {
      const std::lock_guard lock(mutex_);
      posted.swap(posted_);
    }
    for (Job& job : posted) add(clock_.now(), Nanoseconds{0}, std::move(job), nullptr);
  }

  void runNext() {
    std::pop_heap(jobs_.begin(), jobs_.end());
    Scheduled next = std::move(jobs_.back());
    jobs_.pop_back();
    if (next.due > clock_.now()) clock_.setNow(next.due);
    if (next.stopped && *next.stopped) return;
    next.job();
    if (turnEnded) turnEnded();
    if (next.interval > Nanoseconds{0})
      add(next.due + next.interval, next.interval, std::move(next.job), next.stopped);
  }

  VirtualClock& clock_;
  const std::thread::id owner_ = std::this_thread::get_id();
  std::vector<Scheduled> jobs_;
  std::uint64_t counter_ = 0;

  std::mutex mutex_;
  std::condition_variable cameFromOutside_;
  std::vector<Job> posted_;  // guarded by mutex_
};

// Runs a job when its time has come, as if it had taken `jobTime` on a thread of its own.
class VirtualSerialQueues final : public SerialQueues {
 public:
  explicit VirtualSerialQueues(VirtualMainLoop& loop) : loop_(loop) {}
  [[nodiscard]] std::unique_ptr<SerialQueue> make(const std::string& name) override {
    names.push_back(name);
    return std::make_unique<Queue>(*this);
  }
  Nanoseconds jobTime{0};
  std::vector<std::string> names;

 private:
  struct Queue final : SerialQueue {
    explicit Queue(VirtualSerialQueues& all) : queues(all) {}
    void async(Job job) override {
      queues.loop_.after(queues.jobTime, [alive = std::weak_ptr(alive), job = std::move(job)] {
        if (!alive.expired()) job();
      });
    }
    VirtualSerialQueues& queues;
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);
  };
  VirtualMainLoop& loop_;
};

}  // namespace lumivane

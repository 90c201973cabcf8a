#include "app/MainThreadProbe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <deque>

namespace lumivane {
namespace {

using namespace std::chrono_literals;

// Stands until the test moves it; any thread may look at it.
class MovedClock final : public Clock {
 public:
  [[nodiscard]] MediaTime now() const override { return MediaTime(now_.load()); }
  [[nodiscard]] WallTime wallTime() const override { return {}; }
  void advance(Nanoseconds by) { now_ = now_.load() + by; }

 private:
  std::atomic<MediaTime::duration> now_{MediaTime::duration(0)};
};

// Keeps what is posted until the test runs it.
class HeldLoop final : public MainLoop {
 public:
  void post(Job job) override {
    const std::lock_guard guard(mutex_);
    jobs_.push_back(std::move(job));
    changed_.notify_all();
  }
  void after(Nanoseconds /*delay*/, Job /*job*/) override {}
  [[nodiscard]] std::unique_ptr<Timer> every(Nanoseconds, Nanoseconds, Job) override { return nullptr; }

  // Waits for a job, lets so much time pass, and runs it.
  void runOne(MovedClock& clock, Nanoseconds block) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !jobs_.empty(); });
    clock.advance(block);
    const Job job = std::move(jobs_.front());
    jobs_.pop_front();
    lock.unlock();
    job();
  }
  [[nodiscard]] std::size_t held() {
    const std::lock_guard guard(mutex_);
    return jobs_.size();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Job> jobs_;
};

TEST(MainThreadProbe, TellsHowLongTheLoopTookToAnswer) {
  HeldLoop loop;
  MovedClock clock;
  std::vector<Nanoseconds> delays;
  const MainThreadProbe probe(loop, clock, [&](Nanoseconds delay) { delays.push_back(delay); });
  for (const Nanoseconds block : {0ms, 20ms, 0ms}) loop.runOne(clock, block);
  EXPECT_THAT(delays, testing::ElementsAre(0ms, 20ms, 0ms));
}

TEST(MainThreadProbe, AsksOneQuestionAtATimeAndEndsWithoutAnAnswer) {
  HeldLoop loop;
  MovedClock clock;
  bool told = false;
  {
    const MainThreadProbe probe(loop, clock, [&](Nanoseconds) { told = true; });
    loop.runOne(clock, 0ms);
    EXPECT_LE(loop.held(), 1u);
  }
  EXPECT_LE(loop.held(), 1u);
  EXPECT_TRUE(told);
}

}  // namespace
}  // namespace lumivane

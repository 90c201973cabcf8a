#include "app/MainThreadProbe.h"

#include <deque>

#include "tests/support/RealClock.h"

namespace lumivane {
namespace {

using namespace std::chrono_literals;

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

  // Waits for a job, holds it back for so long, and runs it.
  void runOne(Nanoseconds block) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !jobs_.empty(); });
    std::this_thread::sleep_for(block);
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
  const RealClock clock;
  std::vector<Nanoseconds> delays;
  const MainThreadProbe probe(loop, clock, [&](Nanoseconds delay) { delays.push_back(delay); });
  for (const Nanoseconds block : {0ms, 20ms, 0ms}) loop.runOne(block);
  ASSERT_EQ(delays.size(), 3u);
  EXPECT_GE(delays[1], 20ms);
}

TEST(MainThreadProbe, AsksOneQuestionAtATimeAndEndsWithoutAnAnswer) {
  HeldLoop loop;
  const RealClock clock;
  bool told = false;
  {
    const MainThreadProbe probe(loop, clock, [&](Nanoseconds) { told = true; });
    loop.runOne(0ms);
    EXPECT_LE(loop.held(), 1u);
  }
  EXPECT_LE(loop.held(), 1u);
  EXPECT_TRUE(told);
}

}  // namespace
}  // namespace lumivane

#include "platform/linux/QtMainLoop.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <stdexcept>
#include <thread>

#include "tests/support/QtWaiting.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using ::testing::ElementsAre;
using namespace std::chrono_literals;

class QtMainLoopTest : public ::testing::Test {
 protected:
  RecordingLog log_;
  std::unique_ptr<QtMainLoop> loop_ = std::make_unique<QtMainLoop>(log_);
};

TEST_F(QtMainLoopTest, RunsPostedJobsLaterAndInOrder) {
  std::vector<int> order;
  loop_->post([&] {
    order.push_back(1);
    loop_->post([&] { order.push_back(3); });
  });
  loop_->post([&] { order.push_back(2); });
  EXPECT_TRUE(order.empty());
  ASSERT_TRUE(waitUntil([&] { return order.size() == 3; }));
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(QtMainLoopTest, TakesJobsFromOtherThreadsAndRunsThemOnItsOwn) {
  int count = 0;  // without a lock: only the main thread touches it
  std::vector<std::thread::id> threads;
  std::vector<std::jthread> posters;
  for (int t = 0; t < 4; ++t) {
    posters.emplace_back([&] {
      for (int i = 0; i < 250; ++i) {
        loop_->post([&] {
          ++count;
          threads.push_back(std::this_thread::get_id());
        });
      }
    });
  }
  posters.clear();
  EXPECT_TRUE(waitUntil([&] { return count == 1000; }));
  EXPECT_THAT(threads, ::testing::Each(std::this_thread::get_id()));
}

TEST_F(QtMainLoopTest, RunsADelayedJobOnceAndNotTooEarly) {
  int runs = 0;
  QElapsedTimer timer;
  timer.start();
  loop_->after(30ms, [&] { ++runs; });
  ASSERT_TRUE(waitUntil([&] { return runs > 0; }));
  EXPECT_GE(timer.elapsed(), 29);
  bool later = false;
  loop_->after(40ms, [&] { later = true; });
  ASSERT_TRUE(waitUntil([&] { return later; }));
  EXPECT_EQ(runs, 1);
}

TEST_F(QtMainLoopTest, ADelayThatIsOverRunsSoon) {
  bool ran = false;
  loop_->after(-5s, [&] { ran = true; });
  EXPECT_FALSE(ran);
  EXPECT_TRUE(waitUntil([&] { return ran; }));
}

TEST_F(QtMainLoopTest, ADelayOfWeeksIsNotCutShort) {
  bool ran = false;
  loop_->after(std::chrono::hours(24 * 30), [&] { ran = true; });
  bool marker = false;
  loop_->after(20ms, [&] { marker = true; });
  ASSERT_TRUE(waitUntil([&] { return marker; }));
  EXPECT_FALSE(ran);
}

TEST_F(QtMainLoopTest, RepeatsUntilTheTimerIsDropped) {
  int ticks = 0;
  auto timer = loop_->every(5ms, 0ms, [&] { ++ticks; });
  ASSERT_TRUE(waitUntil([&] { return ticks >= 3; }));
  timer.reset();
  const int before = ticks;
  bool marker = false;
  loop_->after(30ms, [&] { marker = true; });
  ASSERT_TRUE(waitUntil([&] { return marker; }));
  EXPECT_EQ(ticks, before);
}

TEST_F(QtMainLoopTest, AJobMayDropItsOwnTimer) {
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  auto held = std::make_shared<int>(7);
  timer = loop_->every(1ms, 0ms, [&, held] {
    timer.reset();
    ticks += *held;  // still there: a running job is never destroyed
  });
  ASSERT_TRUE(waitUntil([&] { return ticks > 0; }));
  EXPECT_EQ(ticks, 7);
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(QtMainLoopTest, DropsItsJobsWhenItEnds) {
  auto held = std::make_shared<int>(0);
  loop_->post([held] { ++*held; });
  loop_->after(1ms, [held] { ++*held; });
  auto timer = loop_->every(1ms, 0ms, [held] { ++*held; });
  loop_.reset();
  EXPECT_EQ(held.use_count(), 1);
  timer.reset();
  runPendingEvents();
  EXPECT_EQ(*held, 0);
}

TEST_F(QtMainLoopTest, GoesOnAfterAJobThatFailed) {
  bool reached = false;
  loop_->post([] { throw std::runtime_error("no such picture"); });
  loop_->post([] { throw 1; });
  loop_->post([&] { reached = true; });
  ASSERT_TRUE(waitUntil([&] { return reached; }));
  EXPECT_TRUE(log_.has("a job of the main loop failed: no such picture", LogLevel::Error));
  EXPECT_TRUE(log_.has("a job of the main loop failed", LogLevel::Error));
}

TEST_F(QtMainLoopTest, EndsATurnAfterWhatWasPending) {
  std::vector<std::string> order;
  loop_->atEndOfTurn([&] { order.emplace_back("end"); });
  QEventLoop events;
  loop_->post([&] { order.emplace_back("job"); });
  loop_->post([&] { order.emplace_back("job"); });
  loop_->after(20ms, [&] {
    order.emplace_back("late job");
    events.quit();
  });
  events.exec();
  const auto lastJob = std::find(order.rbegin(), order.rend(), "job");
  ASSERT_NE(lastJob, order.rend());
  ASSERT_NE(lastJob, order.rbegin());
  EXPECT_EQ(*(lastJob - 1), "end");
  EXPECT_EQ(order.back(), "late job");
}

TEST(TimerTypeFor, IsExactForFramesAndSloppyWhereThatIsAllowed) {
  EXPECT_EQ(timerTypeFor(20ms, 100ms), Qt::PreciseTimer);
  EXPECT_EQ(timerTypeFor(250ms, 0ms), Qt::PreciseTimer);
  EXPECT_EQ(timerTypeFor(250ms, 12ms), Qt::PreciseTimer);
  EXPECT_EQ(timerTypeFor(250ms, 100ms), Qt::CoarseTimer);
  EXPECT_EQ(timerTypeFor(10s, 1s), Qt::CoarseTimer);
}

}  // namespace
}  // namespace lumivane

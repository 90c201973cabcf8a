#include "platform/linux/ThreadBoundedCalls.h"

#include <atomic>
#include <future>
#include <stdexcept>

#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

constexpr std::chrono::seconds kPlenty{30};

struct ThreadBoundedCallsTest : testing::Test {
  RecordingLog log;
};

TEST_F(ThreadBoundedCallsTest, whatEndsInTimeIsDone) {
  ThreadBoundedCalls calls{log};
  int answer = 0;
  EXPECT_TRUE(calls.runWithin(kPlenty, [&answer] { answer = 42; }));
  EXPECT_EQ(answer, 42);
}

TEST_F(ThreadBoundedCallsTest, whatHangsIsLeftToItself) {
  std::promise<void> wakeUp;
  std::atomic<bool> done{false};
  {
    ThreadBoundedCalls calls{log};
    EXPECT_FALSE(calls.runWithin(std::chrono::milliseconds(1), [&] {
      wakeUp.get_future().wait();
      done = true;
    }));
    EXPECT_EQ(calls.callsUnderWay(), 1U);
    EXPECT_TRUE(calls.runWithin(kPlenty, [] {})) << "another call is not held up by it";
    wakeUp.set_value();
  }
  EXPECT_TRUE(done) << "the end waits for it";
}

TEST_F(ThreadBoundedCallsTest, aThousandCallsLeaveNothingBehind) {
  ThreadBoundedCalls calls{log};
  for (int i = 0; i < 1000; ++i) ASSERT_TRUE(calls.runWithin(kPlenty, [] {}));
  EXPECT_EQ(calls.callsUnderWay(), 0U);
}

TEST_F(ThreadBoundedCallsTest, aFailureIsLoggedAndCountsAsTheEnd) {
  ThreadBoundedCalls calls{log};
  EXPECT_TRUE(calls.runWithin(kPlenty, [] { throw std::runtime_error("no memory"); }));
  EXPECT_TRUE(log.has("A call with a time limit failed: no memory", LogLevel::Error));
}

}  // namespace
}  // namespace lumivane

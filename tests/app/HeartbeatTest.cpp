#include "app/Heartbeat.h"

#include <gtest/gtest.h>

#include "tests/support/VirtualTime.h"

namespace lumivane {
namespace {

using std::chrono::milliseconds;

struct HeartbeatTest : testing::Test {
  HeartbeatTest() {
    loop.turnEnded = [this] {
      ++turns;
      heartbeat->turnEnded();
    };
  }
  // A turn of the main loop in which something changes the moment of the next frame.
  void want(std::optional<Nanoseconds> fromNow) {
    wanted = fromNow ? std::optional(clock.now() + *fromNow) : std::nullopt;
    heartbeat->turnEnded();
  }

  VirtualClock clock;
  VirtualMainLoop loop{clock};
  std::optional<MediaTime> wanted;
  int beats = 0;
  int turns = 0;
  std::unique_ptr<Heartbeat> heartbeat = std::make_unique<Heartbeat>(
      loop, clock, [this] { return wanted; }, [this] { ++beats; });
};

TEST_F(HeartbeatTest, standsStillWhileNothingIsWanted) {
  want(std::nullopt);
  loop.runFor(std::chrono::hours(1));
  EXPECT_EQ(beats, 0);
  EXPECT_EQ(turns, 0);
}

TEST_F(HeartbeatTest, beatsWhenItIsWantedAndNotBefore) {
  want(milliseconds(5000));
  loop.runFor(milliseconds(4999));
  EXPECT_EQ(beats, 0);
  loop.runFor(milliseconds(1));
  EXPECT_EQ(beats, 1);
}

TEST_F(HeartbeatTest, beatsFiftyTimesASecondAtMost) {
  want(Nanoseconds{0});  // and whatever a beat does, it stays so
  loop.runFor(milliseconds(1000));
  EXPECT_EQ(beats, 50);
}

// A picture's time and the fetching of the next one may end in the same millisecond.
TEST_F(HeartbeatTest, staysInStep) {
  want(milliseconds(1000) + Nanoseconds{1});
  loop.runFor(milliseconds(1019));
  EXPECT_EQ(beats, 0);
  loop.runFor(milliseconds(1));
  EXPECT_EQ(beats, 1);
}

TEST_F(HeartbeatTest, aTurnMayBringTheBeatForward) {
  want(milliseconds(5000));
  loop.runFor(milliseconds(1000));
  want(milliseconds(0));
  loop.runPending();
  EXPECT_EQ(beats, 1);
}

TEST_F(HeartbeatTest, aTurnMayPutTheBeatOff) {
  want(milliseconds(1000));
  want(milliseconds(3000));
  loop.runFor(milliseconds(2999));
  EXPECT_EQ(beats, 0);
  loop.runFor(milliseconds(1));
  EXPECT_EQ(beats, 1);
}

TEST_F(HeartbeatTest, aTurnMayCallTheBeatOff) {
  want(milliseconds(1000));
  want(std::nullopt);
  loop.runFor(milliseconds(5000));
  EXPECT_EQ(beats, 0);
}

TEST_F(HeartbeatTest, turnsThatChangeNothingAddNoTimers) {
  want(milliseconds(1000));
  for (int i = 0; i < 100; ++i) heartbeat->turnEnded();
  EXPECT_EQ(loop.waitingJobs(), 1U);
}

TEST_F(HeartbeatTest, isSilentOnceItIsGone) {
  loop.turnEnded = nullptr;
  want(milliseconds(1000));
  heartbeat.reset();
  loop.runFor(milliseconds(5000));
  EXPECT_EQ(beats, 0);
}

}  // namespace
}  // namespace lumivane

#include "compositor/render/FramePacer.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr Nanoseconds kInterval = milliseconds{16};

// A screen and a drawing machine: begins frames as the pacer says.
struct Machine {
  FramePacer pacer{kInterval};
  MediaTime now{std::chrono::seconds{100}};
  MediaTime begin;  // of the last frame
  MediaTime seen;   // of the last frame, as the pacer told

  // One frame whose drawing takes so long; returns the time since the beginning of the last one.
  Nanoseconds frame(Nanoseconds cost) {
    now += pacer.waitBefore(now);
    const Nanoseconds period = now - begin;
    begin = now;
    seen = pacer.begin(now);
    now += cost;
    return period;
  }
  // One frame whose swap waits for the display's next refresh.
  Nanoseconds frameWithSync(Nanoseconds cost) {
    const Nanoseconds period = frame(cost);
    now = MediaTime(((now.time_since_epoch() / kInterval) + 1) * kInterval);
    return period;
  }
};

TEST(FramePacer, theFirstFrameBeginsAtOnceAndIsSeenOneIntervalLater) {
  FramePacer pacer(kInterval);
  const MediaTime now{std::chrono::seconds{5}};
  EXPECT_EQ(pacer.waitBefore(now), Nanoseconds{0});
  EXPECT_EQ(pacer.begin(now), now + kInterval);
}

TEST(FramePacer, keepsTheDisplaysPaceWhereSwapsDoNotWait) {
  Machine machine;
  for (int i = 0; i < 20; ++i) machine.frame(milliseconds{2});
  for (int i = 0; i < 100; ++i) EXPECT_EQ(machine.frame(milliseconds{2 + i % 5}), kInterval);
}

TEST(FramePacer, isHeldOnlyByTheDisplayWhereSwapsWait) {
  Machine machine;
  for (int i = 0; i < 5; ++i) machine.frameWithSync(milliseconds{2});
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(machine.pacer.waitBefore(machine.now), Nanoseconds{0});
    EXPECT_EQ(machine.frameWithSync(milliseconds{2 + i % 5}), kInterval);
  }
}

TEST(FramePacer, aFewEarlyFramesDoNotHideThatSwapsWait) {
  Machine machine;
  for (int i = 0; i < 4; ++i) machine.frame(milliseconds{1});  // taken at once, into a queue
  for (int i = 0; i < 20; ++i) machine.frameWithSync(milliseconds{1});
  EXPECT_EQ(machine.pacer.waitBefore(machine.now), Nanoseconds{0});
  EXPECT_EQ(machine.frameWithSync(milliseconds{1}), kInterval);
}

TEST(FramePacer, framesThatCostNothingDoNotFollowEachOtherWithoutEnd) {
  Machine machine;
  machine.frame(Nanoseconds{0});
  for (int i = 0; i < 30; ++i) EXPECT_GE(machine.frame(Nanoseconds{0}), kInterval * 3 / 4);
}

TEST(FramePacer, lateFramesAreNotMadeUpFor) {
  Machine machine;
  for (int i = 0; i < 20; ++i) machine.frame(milliseconds{2});
  machine.frame(milliseconds{200});
  machine.frame(milliseconds{2});
  EXPECT_EQ(machine.frame(milliseconds{2}), kInterval);
  EXPECT_EQ(machine.frame(milliseconds{2}), kInterval);
}

TEST(FramePacer, aSlowMachineNeverWaits) {
  Machine machine;
  machine.frame(milliseconds{34});
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(machine.pacer.waitBefore(machine.now), Nanoseconds{0});
    const MediaTime before = machine.seen;
    EXPECT_EQ(machine.frame(milliseconds{34}), milliseconds{34});
    EXPECT_EQ(machine.seen - before, milliseconds{34});  // it moves as fast as time does
  }
}

TEST(FramePacer, jitterDoesNotReachTheMotion) {
  FramePacer pacer(kInterval);
  MediaTime grid{std::chrono::seconds{100}};
  MediaTime before = pacer.begin(grid);
  Nanoseconds most{0};
  for (int i = 1; i < 200; ++i) {
    grid += kInterval;
    const MediaTime seen = pacer.begin(grid + microseconds{i % 3 * 700});
    most = std::max<Nanoseconds>(most, std::chrono::abs((seen - before) - kInterval));
    before = seen;
  }
  EXPECT_LE(most, microseconds{150});
}

TEST(FramePacer, drivesOutAConstantError) {
  FramePacer pacer(kInterval);
  MediaTime grid{std::chrono::seconds{100}};
  static_cast<void>(pacer.begin(grid));
  MediaTime seen;
  for (int i = 1; i < 100; ++i) seen = pacer.begin(grid + kInterval * i + milliseconds{3});
  EXPECT_LE(std::chrono::abs(seen - (grid + kInterval * 100 + milliseconds{3})), microseconds{1});
}

TEST(FramePacer, timeNeverRunsBack) {
  FramePacer pacer(kInterval);
  MediaTime now{std::chrono::seconds{100}};
  MediaTime before = pacer.begin(now);
  for (const int step : {0, 1, 3, 40, 2, 0, 16, 5}) {
    now += milliseconds{step};
    const MediaTime seen = pacer.begin(now);
    EXPECT_GE(seen, before);
    before = seen;
  }
}

TEST(FramePacer, afterARestTheNextFrameBeginsAtOnce) {
  Machine machine;
  for (int i = 0; i < 20; ++i) machine.frame(milliseconds{2});
  machine.pacer.rest();
  EXPECT_EQ(machine.pacer.waitBefore(machine.now), Nanoseconds{0});
}

TEST(FramePacer, anUnknownIntervalIsTakenAsSixtyHertz) {
  FramePacer pacer(Nanoseconds{0});
  const MediaTime now{std::chrono::seconds{5}};
  EXPECT_NEAR(static_cast<double>((pacer.begin(now) - now).count()), 1e9 / 60, 1);
  pacer.setInterval(std::chrono::hours{1});
  EXPECT_NEAR(static_cast<double>((pacer.begin(now) - now).count()), 1e9 / 60, 1);
}

}  // namespace
}  // namespace lumivane

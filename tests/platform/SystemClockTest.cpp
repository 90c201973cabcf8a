#include "platform/linux/SystemClock.h"

#include <ctime>

namespace lumivane {
namespace {

TEST(SystemClockTest, MediaTimeIsTheTimeSinceTheMachineStarted) {
  const SystemClock clock;
  timespec before{};
  clock_gettime(CLOCK_BOOTTIME, &before);
  const MediaTime now = clock.now();
  timespec after{};
  clock_gettime(CLOCK_BOOTTIME, &after);
  const auto nanoseconds = [](const timespec& time) { return time.tv_sec * 1'000'000'000LL + time.tv_nsec; };
  EXPECT_GE(now.time_since_epoch().count(), nanoseconds(before));
  EXPECT_LE(now.time_since_epoch().count(), nanoseconds(after));
}

TEST(SystemClockTest, WallTimeIsTheCalendars) {
  const SystemClock clock;
  const WallTime before = std::chrono::system_clock::now();
  const WallTime now = clock.wallTime();
  EXPECT_GE(now, before);
  EXPECT_LE(now, std::chrono::system_clock::now());
}

}  // namespace
}  // namespace lumivane

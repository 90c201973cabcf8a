#include "platform/LapTimer.h"
#include "platform/linux/StackTrace.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/VirtualTime.h"

namespace lumivane {
namespace {

TEST(LapTimer, lapsAddUpFromOneMark) {
  VirtualClock clock;
  RecordingLog log;
  LapTimer timer(clock, log);
  timer.mark();
  clock.advance(std::chrono::nanoseconds(1'500));
  timer.lap("opening");
  clock.advance(std::chrono::milliseconds(2));
  timer.lap("decoding");
  EXPECT_TRUE(log.has("timing of opening: 1.500000 microseconds", LogLevel::Information));
  EXPECT_TRUE(log.has("timing of decoding: 2001.500000 microseconds", LogLevel::Information));
}

TEST(StackTrace, namesWhereItWasCalledFrom) {
  RecordingLog log;
  printStacktrace(log);
  const auto entries = log.entries();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].level, LogLevel::Information);
  EXPECT_TRUE(entries[0].text.starts_with("backtrace:  ("));
  EXPECT_TRUE(entries[0].text.ends_with(" ."));
  EXPECT_NE(entries[0].text.find("platform_linux_test"), std::string::npos) << entries[0].text;
}

}  // namespace
}  // namespace lumivane

#include "platform/linux/ProcessUse.h"

#include <unistd.h>

#include <string>
#include <vector>

#include "platform/linux/SystemClock.h"

namespace lumivane {
namespace {

using namespace std::chrono_literals;

TEST(StartToldBy, IsTheTwentySecondField) {
  const std::string stat = "4711 (a) (b c) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 250 20 21\n";
  EXPECT_EQ(startToldBy(stat, 100), MediaTime(2500ms));
  EXPECT_EQ(startToldBy(stat, 1000), MediaTime(250ms));
}

TEST(StartToldBy, IsTheEpochForWhatCannotBeRead) {
  for (const char* stat :
       {"", "4711", "4711 (a) S", "4711 (a) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 x 20"}) {
    EXPECT_EQ(startToldBy(stat, 100), MediaTime{}) << stat;
  }
  EXPECT_EQ(startToldBy("1 (a) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 250 20", 0), MediaTime{});
}

TEST(PeakMemoryToldBy, IsTheHighWaterMark) {
  EXPECT_EQ(peakMemoryToldBy("Name:\tVmHWM:\nVmPeak:\t  99 kB\nVmHWM:\t    2000 kB\nVmRSS:\t 1 kB\n"),
            2'048'000U);
}

TEST(PeakMemoryToldBy, IsNothingForWhatCannotBeRead) {
  for (const char* status : {"", "Name:\tcat\nState:\tZ (zombie)\n", "VmHWM:\t", "VmHWM:\t x kB\n",
                             "VmHWM:\t -1 kB\n", "VmHWM:\t 9223372036854775807 kB\n"}) {
    EXPECT_EQ(peakMemoryToldBy(status), 0U) << status;
  }
}

TEST(ProcessUse, OfAnotherProcessIsAsThatProcessKnowsIt) {
  const std::size_t own = peakMemoryBytesOf(::getpid());
  EXPECT_GT(own, std::size_t{1} << 20);
  // The kernel counts in batches for each thread, and adds up at different times.
  EXPECT_NEAR(static_cast<double>(own), static_cast<double>(peakMemoryBytes()), 4 << 20);
  EXPECT_EQ(peakMemoryBytesOf(0), 0U);
}

TEST(ProcessUse, IsThatOfThisProcess) {
  const MediaTime now = SystemClock().now();
  EXPECT_LT(processStart(), now);
  EXPECT_GT(processStart(), now - 10min);
  const std::size_t before = peakMemoryBytes();
  const std::vector<char> block(64 << 20, 'x');
  EXPECT_GE(peakMemoryBytes(), before + (32 << 20));
  EXPECT_EQ(block.back(), 'x');
}

}  // namespace
}  // namespace lumivane

#include "platform/linux/ProcessUse.h"

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

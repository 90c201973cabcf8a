#include "engine/ImageOrder.h"

#include <algorithm>
#include <set>

#include "tests/support/FakeDesktop.h"

namespace lumivane {
namespace {

struct ImageOrderTest : testing::Test {
  RecordingLog log;
  ScriptedRandom random;
  ImageOrder order{random, log};
};

TEST_F(ImageOrderTest, makesAnAscendingIndexList) {
  EXPECT_EQ(makeIndexList(4), (IndexList{0, 1, 2, 3}));
  EXPECT_TRUE(makeIndexList(0).empty());
}

TEST_F(ImageOrderTest, showsEveryPictureOncePerPass) {
  order.refill(100);
  std::set<ImageIndex> seen;
  for (int i = 0; i < 100; ++i) seen.insert(order.nextAtRandom(100).value());
  EXPECT_EQ(seen.size(), 100U);
  EXPECT_EQ(*seen.rbegin(), 99U);
  EXPECT_FALSE(order.nextAtRandom(100).has_value());
}

TEST_F(ImageOrderTest, drawsThePositionModuloWhatIsLeft) {
  random.script = {7, 2, 0};
  order.refill(5);
  EXPECT_EQ(order.nextAtRandom(5), 2U);  // 7 % 5
  EXPECT_EQ(order.nextAtRandom(5), 3U);  // 2 % 4 of 0 1 3 4
  EXPECT_EQ(order.nextAtRandom(5), 0U);
  EXPECT_EQ(order.imagesNotYetShown(), (IndexList{1, 4}));
}

TEST_F(ImageOrderTest, hasNothingBeforeTheFirstRefill) {
  EXPECT_FALSE(order.nextAtRandom(3).has_value());
}

TEST_F(ImageOrderTest, replacesANumberBeyondTheListByAFreeDraw) {
  random.script = {9, 22};
  order.refill(10);
  EXPECT_EQ(order.nextAtRandom(9), 4U);  // 22 % 9
  EXPECT_TRUE(log.has("img_index (9) > num image files (9)!", LogLevel::Error));
  EXPECT_EQ(order.imagesNotYetShown().size(), 10U) << "the stale number stays";
}

TEST_F(ImageOrderTest, forgetsADeletedPictureWithoutShiftingLaterOnes) {
  order.refill(5);
  order.forget(3);
  EXPECT_EQ(order.imagesNotYetShown(), (IndexList{0, 1, 2, 4}));
}

TEST_F(ImageOrderTest, goesRoundInListOrder) {
  EXPECT_EQ(ImageOrder::nextInListOrder(4, 5), 0U);
  EXPECT_EQ(ImageOrder::nextInListOrder(2, 5), 3U);
  EXPECT_EQ(ImageOrder::nextInListOrder(17, 5), 0U);
}

}  // namespace
}  // namespace lumivane

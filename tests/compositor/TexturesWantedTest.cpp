#include "compositor/model/TexturesWanted.h"

#include <gtest/gtest.h>

#include "compositor/model/MipLevels.h"
#include "tests/support/LayerScenes.h"
#include "tests/support/TestBitmaps.h"

namespace lumivane {
namespace {

constexpr SizePt kScreen{480, 270};  // a quarter of a full-HD screen, so that test pictures stay small

std::vector<WantedTexture> wantedBy(const Layer& tree, Seconds time, double scale = 1) {
  std::vector<WantedTexture> wanted(3);  // what is left of another frame
  texturesWanted(*makeFrameSnapshot(tree, kScreen, scale), time, wanted);
  return wanted;
}

class TexturesWantedTest : public testing::Test {
 protected:
  [[nodiscard]] std::vector<WantedTexture> wanted(double scale = 1) const {
    return wantedBy(root, Seconds{1}, scale);
  }

  Layer root;
  BitmapRef photo = blankBitmap({1500, 1000});
};

TEST(MostDetailedLevel, isTheOneThatGlWouldSample) {
  const BitmapRef bitmap = blankBitmap({64, 32});
  const auto level = [&](double width, double height, double scale = 1) {
    return mostDetailedLevel(*bitmap, {width, height}, scale, ContentsFilter::Trilinear);
  };
  EXPECT_EQ(level(64, 32), 0U);
  EXPECT_EQ(level(200, 100), 0U);  // magnified
  EXPECT_EQ(level(33, 16.5), 0U);
  EXPECT_EQ(level(32, 16), 1U);
  EXPECT_EQ(level(32, 16, 2), 0U);  // two pixels a point
  EXPECT_EQ(level(17, 8.5), 1U);
  EXPECT_EQ(level(16, 8), 2U);
  EXPECT_EQ(level(64, 8), 2U);  // the denser side decides
  EXPECT_EQ(level(0.1, 0.1), 6U);
  EXPECT_EQ(level(0, 0), 6U);
}

TEST(MostDetailedLevel, aLinearFilterKnowsOnlyTheFullSize) {
  EXPECT_EQ(mostDetailedLevel(*blankBitmap({64, 32}), {8, 4}, 1, ContentsFilter::Linear), 0U);
}

TEST(MostDetailedLevel, followsTheSizeAsSeen) {
  const BitmapRef bitmap = blankBitmap({64, 32}, 6);
  EXPECT_EQ(mostDetailedLevel(*bitmap, {16, 32}, 1, ContentsFilter::Trilinear), 1U);
}

TEST_F(TexturesWantedTest, aStillPictureWantsTheLevelsOfItsSize) {
  root.addSublayer(plainPictureLayer(photo, kScreen));  // 405 x 270: 3.7 picture pixels a pixel
  EXPECT_EQ(wanted(), (std::vector<WantedTexture>{{photo, 1, true}}));
  EXPECT_EQ(wanted(2), (std::vector<WantedTexture>{{photo, 0, true}}));
}

TEST_F(TexturesWantedTest, aZoomWantsTheLevelsOfItsLargestSize) {
  Layer* layer = root.addSublayer(plainPictureLayer(photo, kScreen));
  layer->addAnimation(swinging(KeyPath::BoundsSize, SizePt{480, 270}, SizePt{960, 540}, 10), "zoom",
                      Seconds{0});
  EXPECT_EQ(wanted()[0].mostDetailedLevel, 0U);  // at its largest 810 x 540: 1.85 picture pixels a pixel
}

TEST_F(TexturesWantedTest, aPanWithoutStaticBoundsWantsTheLevelsOfItsAnimation) {
  root.addSublayer(
      panningPictureLayer(photo, kScreen, {{0, 0}, {1425, 801}}, {{75, 0}, {1425, 801}}, 10, Seconds{0}));
  EXPECT_EQ(wanted()[0].mostDetailedLevel, 1U);  // 505 points wide: 2.97 picture pixels a pixel
}

TEST_F(TexturesWantedTest, aHiddenPictureIsTakenUpAsLargeAsItsBounds) {
  Layer* layer = root.addSublayer(plainPictureLayer(photo, kScreen));
  layer->edit([](LayerProperties& p) { p.opacity = 0; });
  EXPECT_EQ(wanted(), (std::vector<WantedTexture>{{photo, 1, false}}));
  layer->edit([](LayerProperties& p) { p.bounds.size = {960, 540}; });
  EXPECT_EQ(wanted(), (std::vector<WantedTexture>{{photo, 0, false}}));
}

TEST_F(TexturesWantedTest, theShownOnesComeFirstEachKindInItsOrder) {
  std::vector<BitmapRef> pictures;
  for (const bool shown : {false, true, false, true, true}) {
    pictures.push_back(blankBitmap({8, 6}));
    root.addSublayer(plainPictureLayer(pictures.back(), kScreen))->edit([&](LayerProperties& p) {
      p.hidden = !shown;
    });
  }
  std::vector<BitmapRef> order;
  for (const WantedTexture& texture : wanted()) order.push_back(texture.bitmap);
  EXPECT_EQ(order, (std::vector{pictures[1], pictures[3], pictures[4], pictures[0], pictures[2]}));
}

TEST_F(TexturesWantedTest, aPictureShownAndHeldReadyIsWantedOnceAsShown) {
  const BitmapRef one = blankBitmap({1300, 1000});
  Layer* ahead = root.addSublayer(plainPictureLayer(one, kScreen));
  ahead->edit([](LayerProperties& p) {
    p.opacity = 0;
    p.zPosition = -10;
    p.bounds.size = {960, 540};
  });
  EXPECT_EQ(wanted(), (std::vector<WantedTexture>{{one, 0, false}}));
  root.addSublayer(plainPictureLayer(one, kScreen));
  EXPECT_EQ(wanted(), (std::vector<WantedTexture>{{one, 1, true}}));
}

TEST_F(TexturesWantedTest, whatIsShownComesFirst) {
  const BitmapRef next = blankBitmap({300, 200});
  root.addSublayer(plainPictureLayer(next, kScreen))->edit([](LayerProperties& p) {
    p.opacity = 0;
    p.zPosition = -10;
  });
  root.addSublayer(plainPictureLayer(photo, kScreen));
  ASSERT_EQ(wanted().size(), 2U);
  EXPECT_EQ(wanted()[0].bitmap, photo);
  EXPECT_EQ(wanted()[1].bitmap, next);
}

TEST_F(TexturesWantedTest, hiddenLayersKeepTheirTextures) {
  root.addSublayer(plainPictureLayer(photo, kScreen));
  root.edit([](LayerProperties& p) { p.hidden = true; });
  ASSERT_EQ(wanted().size(), 1U);
  EXPECT_FALSE(wanted()[0].shown);
}

TEST_F(TexturesWantedTest, aPictureAboutToFadeInCountsAsShown) {
  Layer* layer = root.addSublayer(plainPictureLayer(photo, kScreen));
  addFade(*layer, 2, 0, 1, Seconds{1});  // its opacity is 0 at the time asked for
  EXPECT_EQ(wanted(), (std::vector<WantedTexture>{{photo, 1, true}}));
}

TEST_F(TexturesWantedTest, aPictureFadedOutIsOnlyKept) {
  Layer* layer = root.addSublayer(plainPictureLayer(photo, kScreen));
  addFade(*layer, 1, 1, 0, Seconds{0});
  EXPECT_EQ(wanted(), (std::vector<WantedTexture>{{photo, 1, false}}));
}

}  // namespace
}  // namespace lumivane

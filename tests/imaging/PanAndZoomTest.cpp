#include "imaging/PanAndZoom.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <random>
#include <vector>

#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

constexpr SizePt kFullHd{1920, 1080};
constexpr double kAspect = 1920.0 / 1080.0;

// The numbers that a test hands out, and a count of how many were taken.
class ListedRandom final : public RandomSource {
 public:
  ListedRandom(std::initializer_list<std::uint32_t> numbers) : numbers_(numbers) {}
  [[nodiscard]] std::uint32_t random() override {
    return taken_ < numbers_.size() ? numbers_[taken_++] : fail();
  }
  void seed(std::uint64_t /*seed*/) override {}
  [[nodiscard]] std::size_t taken() const { return taken_; }

 private:
  static std::uint32_t fail() {
    ADD_FAILURE() << "more random numbers than expected";
    return 0;
  }
  std::vector<std::uint32_t> numbers_;
  std::size_t taken_ = 0;
};

class PanAndZoomTest : public testing::Test {
 protected:
  PanAndZoomRects rects(float width, float height, std::initializer_list<std::uint32_t> numbers,
                        SizePt screen = kFullHd) {
    ListedRandom random(numbers);
    const PanAndZoomRects result = calcKenBurnsForImageWidth(width, height, screen, random, log_);
    EXPECT_EQ(random.taken(), numbers.size());
    return result;
  }
  RecordingLog log_;
};

constexpr std::uint32_t kHalf = 1U << 30;  // half of the range, as pick takes it: exactly 0.5

TEST_F(PanAndZoomTest, LandscapePansFromOneEdgeToTheOther) {
  // Left: 0.7 of the width, offset 0. Right: 0.95 of the width, which at 3800 / 2137.5 leaves 862.5 pixels above.
  const PanAndZoomRects result = rects(4000, 3000, {0, 0, kRandomMax, kHalf, kRandomMax});
  EXPECT_EQ(result.from, (PictureRect{0, 0, 2800, 2800 / kAspect}));
  EXPECT_EQ(result.to, (PictureRect{200, 431, 3800, 2137.5}));
  EXPECT_TRUE(log_.entries().empty());
}

TEST_F(PanAndZoomTest, DirectionIsDrawnLast) {
  const PanAndZoomRects there = rects(4000, 3000, {5, 6, 7, 8, kHalf});
  const PanAndZoomRects back = rects(4000, 3000, {5, 6, 7, 8, kHalf - 1});
  EXPECT_EQ(there.from.x, 0);
  EXPECT_EQ(there.from, back.to);
  EXPECT_EQ(there.to, back.from);
}

TEST_F(PanAndZoomTest, FractionsAreOfSinglePrecision) {
  const double uniform = 123456789.0 / 2147483647.0;
  const float width = static_cast<float>(uniform * 0.25 + static_cast<double>(0.7F)) * 4001.0F;
  const PanAndZoomRects result = rects(4001, 3000, {123456789, 0, 0, 0, kRandomMax});
  EXPECT_EQ(result.from.width, static_cast<double>(width));
  EXPECT_EQ(result.from.height, static_cast<double>(width) / kAspect);
}

TEST_F(PanAndZoomTest, PanoramaShowsHalfOfItsWidth) {
  // 4500 pixels would be 2531.25 high: more than there are, so the height decides.
  const PanAndZoomRects high = rects(9000, 2000, {0, kRandomMax, 0, 0, kRandomMax});
  EXPECT_EQ(high.from, (PictureRect{0, 0, kAspect * 2000, 2000}));
  EXPECT_EQ(high.to, (PictureRect{9000 - kAspect * 2000, 0, kAspect * 2000, 2000}));
  // A shape just beyond 1.5 times the screen's takes the fraction 0.5, one just below it 0.7.
  EXPECT_EQ(rects(2700, 1000, {0, 0, 0, 0, kRandomMax}).from.width, 1350);
  EXPECT_EQ(rects(2650, 1000, {0, 0, 0, 0, kRandomMax}).from.width, kAspect * 1000);
}

TEST_F(PanAndZoomTest, PartThatIsTooHighSpansTheHeight) {
  // 0.75 of 3000 pixels would be 1266 high.
  const PanAndZoomRects result = rects(3000, 1000, {kRandomMax, kHalf, kRandomMax, kHalf, kRandomMax});
  EXPECT_EQ(result.from, (PictureRect{0, 0, kAspect * 1000, 1000}));
  EXPECT_EQ(result.to, (PictureRect{3000 - kAspect * 1000, 0, kAspect * 1000, 1000}));
}

TEST_F(PanAndZoomTest, TallPicturePansUpright) {
  const PanAndZoomRects result = rects(1000, 3000, {0, kHalf, kRandomMax, kHalf, kRandomMax});
  EXPECT_EQ(result.from, (PictureRect{125, 0, 750, 750 / kAspect}));  // half of the gap of 250 and one
  EXPECT_EQ(result.to, (PictureRect{0, 3000 - 1000 / kAspect, 1000, 1000 / kAspect}));
  EXPECT_EQ(rects(1000, 3000, {0, kHalf, kRandomMax, kHalf, 0}).from, result.to);
}

TEST_F(PanAndZoomTest, TallBeginsAtHalfTheScreensAspect) {
  EXPECT_EQ(rects(800, 900, {0, 0, 0, 0, kRandomMax}).from.width, static_cast<double>(0.7F * 800.0F));
  EXPECT_EQ(rects(799, 900, {0, 0, 0, 0, kRandomMax}).from.width, 0.75 * 799);
}

TEST_F(PanAndZoomTest, LargestRandomNumberGivesNoOffsetBeyondTheGap) {
  // In single precision the largest number is one, so that the offset would be the whole span.
  const PanAndZoomRects result = rects(4000, 3000, {0, kRandomMax, 0, kRandomMax - 200, kRandomMax});
  EXPECT_EQ(result.from.y, 0);
  EXPECT_EQ(result.to.y, 1425);  // all of the gap of 3000 - 1575
}

TEST_F(PanAndZoomTest, PictureWithoutASizeIsToldAndGetsAStandIn) {
  const PanAndZoomRects result = rects(0, 0, {});
  EXPECT_EQ(result.from, (PictureRect{0, 0, 300, 200}));
  EXPECT_EQ(result.to, (PictureRect{0, 0, 300, 200}));
  EXPECT_TRUE(log_.has("aspect_img vs aspect_screen ?! (can't happen)!", LogLevel::Error));
  rects(100, 100, {}, {0, 0});
  EXPECT_EQ(log_.entries().size(), 2U);
}

TEST_F(PanAndZoomTest, EdgesPassedByRoundingAreTold) {
  // So many pixels that single precision no longer counts them one by one.
  constexpr float kWide = 67'108'864;
  rects(kWide, kWide, {0, 0, 0, kRandomMax, kRandomMax});
  rects(33'554'432, 268'435'456, {kRandomMax, 0, kRandomMax, 0, kRandomMax});
  EXPECT_THAT(
      log_.entries(),
      testing::ElementsAre(
          RecordingLog::Entry{
              "rect_right.origin.y + rect_right.size.height > imgheight ! ( 40684752.000000 + "
              "26424114.750000 > 67108864.000000 )",
              LogLevel::Error},
          RecordingLog::Entry{"rect_top.origin.x + rect_top.size.width > imgwidth ! ( 0.000000 + "
                              "33554432.000000 > 33554432.000000 )",
                              LogLevel::Error},
          RecordingLog::Entry{"rect_top.origin.y + rect_top.size.height > imgheight ! ( 249561088.000000 + "
                              "18874368.000000 > 268435456.000000 )",
                              LogLevel::Error}));
}

TEST_F(PanAndZoomTest, RectanglesLieInThePictureAndKeepTheScreensAspect) {
  std::mt19937 engine(20261121);
  TwisterRandom random;
  const std::vector<SizePt> screens = {{1920, 1080}, {1280, 1024}, {3440, 1440}, {1080, 1920}, {2560, 1600}};
  for (int i = 0; i < 20'000; ++i) {
    const auto width = static_cast<double>(1 + engine() % 20'000);
    const auto height = static_cast<double>(1 + engine() % 20'000);
    const SizePt screen = screens[engine() % screens.size()];
    const PanAndZoomRects result = calcKenBurnsForImageWidth(
        static_cast<float>(width), static_cast<float>(height), screen, random, log_);
    for (const PictureRect& rect : {result.from, result.to}) {
      SCOPED_TRACE(testing::Message() << width << " x " << height << " on " << screen.width);
      ASSERT_GT(rect.width, 0);
      ASSERT_GE(std::min(rect.x, rect.y), -1);
      ASSERT_LE(rect.x + rect.width, width + 1);
      ASSERT_LE(rect.y + rect.height, height + 1);
      ASSERT_NEAR(rect.width / rect.height, screen.width / screen.height, 1e-9 * screen.width);
    }
  }
}

TEST_F(PanAndZoomTest, SameSeedGivesSameRectangles) {
  for (std::uint64_t seed = 0; seed < 50; ++seed) {
    TwisterRandom one;
    TwisterRandom two;
    one.seed(seed);
    two.seed(seed);
    EXPECT_EQ(calcKenBurnsForImageWidth(6000, 4000, kFullHd, one, log_),
              calcKenBurnsForImageWidth(6000, 4000, kFullHd, two, log_));
    EXPECT_EQ(one.random(), two.random());
  }
}

// What is taken up of a picture before its rectangles are drawn has to be enough for all of them.
TEST(LargestPanAndZoom, IsReachedAndNeverPassed) {
  RecordingLog log;
  std::mt19937 sizes(7);
  for (int i = 0; i < 300; ++i) {
    const auto width = static_cast<float>(200 + sizes() % 8000);
    const auto height = static_cast<float>(200 + sizes() % 8000);
    const SizePt largest = largestPanAndZoom(width, height, kFullHd);
    EXPECT_NEAR(largest.width / largest.height, width / height, 1e-5 * (width / height));
    TwisterRandom random;
    random.seed(static_cast<std::uint64_t>(i));
    double closest = 0;
    for (int draw = 0; draw < 100; ++draw) {
      const PanAndZoomRects rects = calcKenBurnsForImageWidth(width, height, kFullHd, random, log);
      for (const PictureRect& rect : {rects.from, rects.to})
        closest = std::max(closest, kFullHd.width / rect.width * width);
    }
    EXPECT_LE(closest, largest.width * (1 + 1e-6)) << width << " x " << height;
    EXPECT_GE(closest, largest.width * 0.97) << width << " x " << height;
  }
}

TEST(LargestPanAndZoom, OfNoPictureIsTheScreen) {
  EXPECT_EQ(largestPanAndZoom(0, 0, kFullHd), kFullHd);
  EXPECT_EQ(largestPanAndZoom(100, 0, kFullHd), kFullHd);
}

TEST(BlackBorders, AreAlwaysAllowedWhenTheUserSaysSo) {
  EXPECT_TRUE(allowBlackBordersWidth(9000, 1000, kFullHd, {true, 0}));
}

TEST(BlackBorders, AreKeptOnlyBesidePicturesClearlyNarrowerThanTheScreen) {
  const BlackBorderSettings settings{false, 0.1F};
  EXPECT_TRUE(allowBlackBordersWidth(4000, 3000, kFullHd, settings));
  EXPECT_TRUE(allowBlackBordersWidth(1600, 1000, kFullHd, settings));
  EXPECT_FALSE(allowBlackBordersWidth(1700, 1000, kFullHd, settings));
  EXPECT_FALSE(allowBlackBordersWidth(9000, 1000, kFullHd, settings)) << "a panorama is cropped";
  EXPECT_FALSE(allowBlackBordersWidth(1920, 1080, kFullHd, {false, 0}))
      << "the screen's own shape needs none";
  EXPECT_FALSE(allowBlackBordersWidth(0, 0, kFullHd, settings));
}

TEST(PlainZoom, AlternatesBetweenInAndOut) {
  const PlainZoom first = nextPlainZoom(4000, 3000, kFullHd, {true, 0}, 1.2F, false);
  const double factor = 1.2F;
  EXPECT_EQ(first, (PlainZoom{{1920 / factor, 1080 / factor}, {1920 * factor, 1080 * factor}, true, false}));
  const PlainZoom second = nextPlainZoom(4000, 3000, kFullHd, {true, 0}, 1.2F, first.zoomIn);
  EXPECT_EQ(second, (PlainZoom{first.toSize, first.fromSize, false, false}));
}

TEST(PlainZoom, CroppedPictureBeginsAtTheScreensSize) {
  const double factor = 1.3F;
  EXPECT_EQ(nextPlainZoom(4000, 2000, kFullHd, {false, 0}, 1.3F, false),
            (PlainZoom{kFullHd, {1920 * factor, 1080 * factor}, true, true}));
  EXPECT_EQ(nextPlainZoom(4000, 3000, kFullHd, {false, 0}, 1.3F, false),
            (PlainZoom{{1920 / factor, 1080 / factor}, {1920 * factor, 1080 * factor}, true, false}));
}

TEST(PlainZoom, SmallPictureIsNeverBlownUp) {
  const double fraction = 0.43F;
  const PlainZoom expected{
      {1920 * fraction, 1080 * fraction}, {1920 * fraction * 1.5, 1080 * fraction * 1.5}, true, false};
  EXPECT_EQ(nextPlainZoom(800, 400, kFullHd, {true, 0}, 1.2F, false), expected);
  EXPECT_EQ(nextPlainZoom(800, 400, kFullHd, {true, 0}, 1.2F, true), expected) << "always inwards";
  EXPECT_NE(nextPlainZoom(826, 400, kFullHd, {true, 0}, 1.2F, false), expected);
  EXPECT_NE(nextPlainZoom(800, 465, kFullHd, {true, 0}, 1.2F, false), expected);
  EXPECT_NE(nextPlainZoom(800, 400, kFullHd, {false, 0}, 1.2F, false), expected);
}

}  // namespace
}  // namespace lumivane

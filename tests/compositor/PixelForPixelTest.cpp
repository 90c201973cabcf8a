// Contents that are drawn for the screen's own pixels come through unchanged, whatever the scale and the place.
#include <cmath>

#include "tests/compositor/RendererTest.h"

namespace lumivane {
namespace {

// One of a text's pixels: transparent, opaque, or anything between. A different one next to each.
Rgba inkAt(int x, int y) {
  const auto alpha = static_cast<std::uint8_t>((x * 89 + y * 151) % 256);
  const auto part = [&](int of) { return static_cast<std::uint8_t>(of % (alpha + 1)); };
  return {part(x * 7 + y), part(x + y * 31), part(x * y), alpha};
}

struct Placement {
  double scale;
  PointPt position;
  SizePt bounds;     // not a whole number of pixels
  int left, bottom;  // where the first pixel is expected
};

class PixelForPixel : public RendererTest, public testing::WithParamInterface<Placement> {
 protected:
  // As large as the bounds, rounded up.
  [[nodiscard]] static BitmapRef inkFor(const Placement& place) {
    return makeBitmap({static_cast<int>(std::ceil(place.bounds.width * place.scale)),
                       static_cast<int>(std::ceil(place.bounds.height * place.scale))},
                      inkAt);
  }
  Layer* addText(const Placement& place, BitmapRef ink) {
    Layer* const text = root.addSublayer(std::make_unique<Layer>());
    text->edit([&](LayerProperties& p) {
      p.bounds = {{0, 0}, place.bounds};
      p.anchorPoint = {0, 0};
      p.position = place.position;
      p.contents = std::move(ink);
      p.contentsGravity = ContentsGravity::LowerLeft;
    });
    return text;
  }
  ReadBack drawAtScale(double scale) {
    const SizePt viewport{kFramebuffer.width / scale, kFramebuffer.height / scale};
    return draw(evaluate(*makeFrameSnapshot(root, viewport, scale), Seconds{0}));
  }
};

TEST_P(PixelForPixel, everyPixelIsTheBitmapsOwn) {
  const Placement& place = GetParam();
  const BitmapRef ink = inkFor(place);
  addText(place, ink);
  const ReadBack pixels = drawAtScale(place.scale);
  const SizePx size = ink->storedSize();
  const int top = kFramebuffer.height - place.bottom - size.height;
  for (int y = 0; y < kFramebuffer.height; ++y) {
    for (int x = 0; x < kFramebuffer.width; ++x) {
      const bool inside = x >= place.left && x < place.left + size.width && y >= top && y < top + size.height;
      Rgba expected = inside ? inkAt(x - place.left, y - top) : Rgba{0, 0, 0, 255};
      expected.alpha = 255;  // over black
      ASSERT_EQ(pixels.at(x, y), expected) << x << ", " << y;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Scales, PixelForPixel,
                         testing::Values(Placement{1, {7, 7}, {186.02, 27.3}, 7, 7},
                                         Placement{1, {14, 14}, {186.5, 51.28}, 14, 14},
                                         Placement{1.25, {7, 7}, {186.02, 27.3}, 9, 9},
                                         Placement{1.25, {14, 14}, {186.02, 51.28}, 18, 18},
                                         Placement{1.5, {7, 7}, {150.6, 27.3}, 11, 11},
                                         Placement{1.5, {7.4, 6.2}, {150.6, 27.3}, 11, 9},
                                         Placement{2, {7, 7}, {141.26, 27.28}, 14, 14},
                                         Placement{2.75, {7, 7}, {101.01, 27.28}, 19, 19}));

// A window of 255 points is 318.75 pixels wide at a scale of 1.25, and so 319 or 320: a little more than the scale says.
TEST_F(PixelForPixel, aFramebufferThatIsNoMultipleOfTheWindowStretchesNothing) {
  const Placement place{1.25, {14, 14}, {200.3, 51.28}, 18, 18};
  const BitmapRef ink = inkFor(place);
  addText(place, ink);
  const ReadBack pixels = draw(evaluate(*makeFrameSnapshot(root, {255, 143.6}, 1.25), Seconds{0}));
  const SizePx size = ink->storedSize();
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      const Rgba found = pixels.at(18 + x, kFramebuffer.height - 18 - size.height + y);
      ASSERT_EQ(found.red, inkAt(x, y).red) << x << ", " << y;
      ASSERT_EQ(found.blue, inkAt(x, y).blue) << x << ", " << y;
    }
  }
}

TEST_F(PixelForPixel, aBitmapSmallerThanItsLayerIsNotStretched) {
  addText({1, {10, 20}, {200, 100}, 0, 0}, makeBitmap({5, 3}, inkAt));
  const ReadBack pixels = drawAtScale(1);
  EXPECT_EQ(pixels.at(12, 180 - 20 - 3).green, inkAt(2, 0).green);
  EXPECT_EQ(pixels.at(14, 180 - 20 - 1).green, inkAt(4, 2).green);
  EXPECT_EQ(pixels.at(15, 180 - 20 - 1).green, 0);
  EXPECT_EQ(pixels.at(12, 180 - 20 - 4).green, 0);
}

}  // namespace
}  // namespace lumivane

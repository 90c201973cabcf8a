// Pixels by exact figures, on desktop GL and on GL ES.
#include "tests/compositor/RendererTest.h"

#include <cmath>

#include "tests/support/TestScenery.h"

namespace lumivane {
namespace {

class RendererPixels : public RendererTest, public testing::WithParamInterface<GlKind> {
 protected:
  RendererPixels() : RendererTest(kFramebuffer, GetParam()) {}

  static PictureQuad quad(RectPt frame, const BitmapRef& picture, double opacity = 1) {
    return {frame, picture, opacity, ContentsFilter::Trilinear, ContentsFilter::Trilinear};
  }
  // Draws quads as they are, each picture with all its levels.
  ReadBack drawQuads(std::vector<Quad> quads) {
    DrawList list{kViewport, std::move(quads), {}};
    for (const Quad& one : list.quads) {
      if (const auto* picture = std::get_if<PictureQuad>(&one))
        list.wanted.push_back({picture->contents, 0, true});
    }
    return draw(list);
  }
  static void expectNear(Rgba found, double red, double green, double blue, double tolerance) {
    EXPECT_NEAR(found.red, red, tolerance);
    EXPECT_NEAR(found.green, green, tolerance);
    EXPECT_NEAR(found.blue, blue, tolerance);
  }
};

INSTANTIATE_TEST_SUITE_P(Gl, RendererPixels, testing::Values(GlKind::Desktop, GlKind::Embedded),
                         [](const auto& kind) {
                           return kind.param == GlKind::Desktop ? "Desktop" : "Embedded";
                         });

TEST_P(RendererPixels, nothingIsBlackAndOpaque) {
  const ReadBack pixels = drawQuads({});
  EXPECT_EQ(pixels.at(0, 0), (Rgba{0, 0, 0, 255}));
  EXPECT_EQ(pixels.at(319, 179), (Rgba{0, 0, 0, 255}));
}

TEST_P(RendererPixels, aPictureAtItsOwnSizeIsCopiedExactly) {
  const BitmapRef picture = makeBitmap({32, 16}, [](int x, int y) {
    return Rgba{byteOf(x * 8), byteOf(y * 16), byteOf((x * 37) % 256), 255};
  });
  const ReadBack pixels = drawQuads({quad({{10, 20}, {32, 16}}, picture)});
  for (int y = 0; y < 16; ++y) {
    for (int x = 0; x < 32; ++x) {
      ASSERT_EQ(pixels.at(10 + x, 180 - 20 - 16 + y),
                (Rgba{byteOf(x * 8), byteOf(y * 16), byteOf((x * 37) % 256), 255}))
          << x << ", " << y;
    }
  }
  EXPECT_EQ(pixels.at(9, 150).red, 0);
  EXPECT_EQ(pixels.at(42, 150).red, 0);
}

// Enlarged tenfold, the middle of each of the picture's pixels has that pixel's colour, in both directions alike.
TEST_P(RendererPixels, pixelsOfRectangularPicturesAreWhereTheyShouldBe) {
  const BitmapRef picture = makeBitmap({5, 3}, [](int x, int y) {
    return Rgba{byteOf(x * 50), byteOf(y * 100), byteOf((x + y) % 2 * 255), 255};
  });
  const ReadBack pixels = drawQuads({quad({{0, 0}, {55, 33}}, picture)});  // eleven: each has a middle pixel
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 5; ++x) {
      expectNear(pixels.at(x * 11 + 5, 180 - 33 + y * 11 + 5), x * 50, y * 100, (x + y) % 2 * 255, 1);
    }
  }
  expectNear(pixels.at(0, 180 - 33), 0, 0, 0,
             1);  // beyond the middle of the outermost pixels: the edge goes on
}

TEST_P(RendererPixels, edgesFallBetweenPixels) {
  const BitmapRef white = makeBitmap({8, 8}, Rgba{255, 255, 255, 255});
  const ReadBack pixels = drawQuads({quad({{10.25, 20}, {10.25, 10.5}}, white)});
  EXPECT_NEAR(pixels.at(10, 155).red, 0.75 * 255, 1);
  EXPECT_EQ(pixels.at(11, 155).red, 255);
  EXPECT_NEAR(pixels.at(20, 155).red, 0.5 * 255, 1);
  EXPECT_EQ(pixels.at(21, 155).red, 0);
  EXPECT_NEAR(pixels.at(15, 180 - 31).red, 0.5 * 255, 1);
  EXPECT_EQ(pixels.at(15, 180 - 20).red, 0);
}

// A gradient stays a gradient in every level, so that each pixel of the screen tells which point it shows.
TEST_P(RendererPixels, aPanShowsTheRightPartAtEveryTime) {
  const BitmapRef picture = gradientPicture({640, 400});
  const RectPt from{{0, 20}, {448, 252}};
  const RectPt to{{128, 100}, {512, 288}};
  root.addSublayer(panningPictureLayer(picture, kViewport, from, to, 10, Seconds{0}));
  for (const double time : {0.0, 2.5, 5.0, 7.3, 10.0, 14.0}) {
    const double progress = eased(TimingCurve::EaseInEaseOut, time <= 10 ? time / 10 : 2 - time / 10);
    const auto mix = [&](double a, double b) { return a + (b - a) * progress; };
    // Width and place of the whole picture in points are what moves evenly, not the part that is seen.
    const double width = mix(640 * 320 / 448.0, 640 * 320 / 512.0);
    const double left = mix(-0 * 320 / 448.0, -128 * 320 / 512.0);
    const double bottom = mix(-20 * 320 / 448.0, -100 * 320 / 512.0);
    const ReadBack pixels = drawAt(time);
    for (const auto& [x, y] : {std::pair{0, 0}, {160, 90}, {319, 0}, {0, 179}, {319, 179}, {77, 133}}) {
      const double u = (x + 0.5 - left) / width;
      const double v = (180 - y - 0.5 - bottom) / (width * 400 / 640);
      expectNear(pixels.at(x, y), 255 * u, 255 * (1 - v), 64, 1.5);  // each level was rounded to 8 bits
    }
  }
}

TEST_P(RendererPixels, halfSizeShowsTheSecondLevel) {
  // Black and white columns: only the level of half the size is an even grey.
  const BitmapRef stripes = makeBitmap({64, 64}, [](int x, int) {
    return x % 2 == 0 ? Rgba{0, 0, 0, 255} : Rgba{255, 255, 255, 255};
  });
  const ReadBack pixels = drawQuads({quad({{0.5, 0}, {32, 32}}, stripes)});
  for (int x = 2; x < 30; ++x) EXPECT_NEAR(pixels.at(x, 160).red, 128, 2);
}

TEST_P(RendererPixels, betweenTwoLevelsBothAreMixed) {
  const BitmapRef picture = makeBitmap({64, 64}, [](int x, int) {
    return x % 2 == 0 ? Rgba{0, 0, 0, 255} : Rgba{255, 255, 255, 255};
  });
  const double side = 64 / std::sqrt(2.0);  // level 0.5: the full size and the half size in equal parts
  const ReadBack pixels = drawQuads({quad({{0, 0}, {side, side}}, picture)});
  double contrast = 0;
  for (int x = 4; x < 40; ++x) contrast = std::max(contrast, std::abs(pixels.at(x, 160).red - 127.5));
  EXPECT_GT(contrast, 20);
  EXPECT_LT(contrast, 80);  // the full size alone would give up to 127
}

TEST_P(RendererPixels, everyOrientationIsSeenUpright) {
  const ReadBack upright = drawQuads({quad({{40, 10}, {120, 160}}, letterPicture(1))});
  EXPECT_NEAR(upright.at(40 + 25, 20 + 80).blue, 160, 1);  // the letter's stem, left of the middle
  EXPECT_NEAR(upright.at(40 + 105, 20 + 80).blue, 235, 1);
  for (int code = 2; code <= 8; ++code) {
    const BitmapRef picture = letterPicture(code);
    EXPECT_EQ(picture->displaySize(), (SizePx{12, 16}));
    const ReadBack turned = drawQuads({quad({{40, 10}, {120, 160}}, picture)});
    int most = 0;
    for (std::size_t i = 0; i < turned.bytes.size(); ++i)
      most = std::max(most, std::abs(turned.bytes[i] - upright.bytes[i]));
    EXPECT_LE(most, 1) << "orientation " << code;
  }
}

TEST_P(RendererPixels, blendsBackToFront) {
  const BitmapRef red = makeBitmap({4, 4}, Rgba{255, 0, 0, 255});
  const BitmapRef blue = makeBitmap({4, 4}, Rgba{0, 0, 255, 255});
  const ReadBack pixels =
      drawQuads({quad({{0, 0}, kViewport}, red, 0.75), quad({{0, 0}, kViewport}, blue, 0.25)});
  expectNear(pixels.at(100, 100), 0.75 * 0.75 * 255, 0, 0.25 * 255, 1);
  EXPECT_EQ(pixels.at(100, 100).alpha, 255);
}

// Reference: each picture drawn alone, blended here in full precision.
TEST_P(RendererPixels, aDissolveInOnePassIsOnePictureOverTheOther) {
  const BitmapRef one = landscapePicture({300, 200});
  const BitmapRef two = portraitPicture({200, 300});
  const RectPt left{{25.3, 0}, {270, 180}};
  const RectPt right{{100.6, 10.7}, {120, 180}};
  const ReadBack lower = drawQuads({quad(left, one)});
  const ReadBack upper = drawQuads({quad(right, two)});
  const ReadBack cover = drawQuads({quad(right, makeBitmap({8, 8}, Rgba{255, 255, 255, 255}))});
  for (const auto& [lowerOpacity, upperOpacity] :
       {std::pair{1.0, 0.02}, {0.9, 0.1}, {0.5, 0.5}, {0.05, 0.97}}) {
    const Quad below = quad(left, one, lowerOpacity);
    const Quad above = quad(right, two, upperOpacity);
    ASSERT_TRUE(dissolveOf(below, above));
    const ReadBack drawn = drawQuads({below, above});
    double most = 0;
    for (std::size_t i = 0; i < drawn.bytes.size(); ++i) {
      if (i % 4 == 3) continue;
      const double hidden = upperOpacity * cover.bytes[i] / 255;
      const double expected = upper.bytes[i] * upperOpacity + lower.bytes[i] * lowerOpacity * (1 - hidden);
      most = std::max(most, std::abs(drawn.bytes[i] - expected));
    }
    EXPECT_LE(most, 1.2) << lowerOpacity << " under "
                         << upperOpacity;  // the references are rounded themselves
  }
}

TEST_P(RendererPixels, aDissolveInOnePassIsTheTwoQuadsBlended) {
  const BitmapRef one = landscapePicture({300, 200});
  const BitmapRef two = portraitPicture({200, 300});
  // Lies outside, and so does nothing but keep the two from being joined.
  const ColorQuad apart{{{-50, -50}, {10, 10}}, {1, 1, 1, 1}, 1};
  const ColorQuad ground{{{0, 0}, {320, 100}}, {0, 0.5, 0.25, 1}, 1};
  for (const auto& [lowerOpacity, upperOpacity] :
       {std::pair{1.0, 0.02}, {0.9, 0.1}, {0.5, 0.5}, {0.05, 0.97}}) {
    const Quad lower = quad({{25.3, 0}, {270, 180}}, one, lowerOpacity);
    const Quad upper = quad({{100.6, 10.7}, {120, 180}}, two, upperOpacity);
    const ReadBack joined = drawQuads({ground, lower, upper});
    const ReadBack separate = drawQuads({ground, lower, apart, upper});
    int most = 0;
    double sum = 0;
    for (std::size_t i = 0; i < joined.bytes.size(); ++i) {
      const int difference = std::abs(joined.bytes[i] - separate.bytes[i]);
      most = std::max(most, difference);
      sum += difference;
    }
    EXPECT_LE(most, 2) << lowerOpacity << " under " << upperOpacity;  // blending twice rounds twice
    EXPECT_LE(sum / static_cast<double>(joined.bytes.size()), 0.6);
  }
}

TEST_P(RendererPixels, transparentPartsOfAPictureLetTheGroundThrough) {
  const BitmapRef half = makeBitmap({4, 4}, Rgba{100, 0, 0, 128});  // premultiplied
  const ReadBack pixels =
      drawQuads({ColorQuad{{{0, 0}, kViewport}, {0, 1, 0, 1}, 1}, quad({{0, 0}, kViewport}, half, 0.5)});
  expectNear(pixels.at(100, 100), 50, 255 * (1 - 0.5 * 128 / 255), 0, 1);
}

TEST_P(RendererPixels, colorsCountTheirAlphaAndTheirLayersOpacity) {
  const ReadBack pixels = drawQuads({ColorQuad{{{0, 0}, {100, 180}}, {1, 0.5, 0, 0.5}, 0.5}});
  expectNear(pixels.at(50, 90), 255 * 0.25, 255 * 0.125, 0, 1);
  EXPECT_EQ(pixels.at(100, 90).red, 0);
}

TEST_P(RendererPixels, aShadowIsABlurredRectangle) {
  const double deviation = 7;
  const ReadBack pixels = drawQuads({ColorQuad{{{0, 0}, kViewport}, {1, 1, 1, 1}, 1},
                                     ShadowQuad{{{100, 60}, {120, 40}}, deviation, {0, 0, 0, 1}, 0.5}});
  const auto step = [&](double x, double edge) {
    return 0.5 * std::erf((x - edge) / (deviation * std::sqrt(2)));
  };
  for (const auto& [x, y] :
       {std::pair{160, 100}, {100, 100}, {90, 100}, {97, 118}, {160, 125}, {85, 100}, {5, 5}}) {
    const double px = x + 0.5;
    const double py = 180 - y - 0.5;
    const double shade = (step(px, 100) - step(px, 220)) * (step(py, 60) - step(py, 100));
    EXPECT_NEAR(pixels.at(x, y).red, 255 * (1 - 0.5 * shade), 1.01) << x << ", " << y;
  }
}

TEST_P(RendererPixels, aShadowWithoutRadiusHasSharpEdges) {
  const ReadBack pixels = drawQuads({ColorQuad{{{0, 0}, kViewport}, {1, 1, 1, 1}, 1},
                                     ShadowQuad{{{100, 60}, {120, 40}}, 0, {0, 0, 0, 1}, 1}});
  EXPECT_LE(pixels.at(101, 100).red, 1);
  EXPECT_GE(pixels.at(98, 100).red, 254);
}

TEST_P(RendererPixels, aViewportOfOtherSizeIsStretchedToTheFramebuffer) {
  DrawList list{{640, 360}, {ColorQuad{{{320, 0}, {320, 180}}, {1, 0, 0, 1}, 1}}, {}};
  const ReadBack pixels = draw(list);
  EXPECT_EQ(pixels.at(159, 90).red, 0);
  EXPECT_EQ(pixels.at(160, 90).red, 255);
  EXPECT_EQ(pixels.at(319, 179).red, 255);
  EXPECT_EQ(pixels.at(319, 89).red, 0);
}

TEST_P(RendererPixels, aViewportWithoutAreaIsBlack) {
  DrawList list{{0, 0}, {ColorQuad{{{0, 0}, {10, 10}}, {1, 0, 0, 1}, 1}}, {}};
  EXPECT_EQ(draw(list).at(5, 175).red, 0);
}

TEST_P(RendererPixels, aPictureWithoutTextureIsLeftOut) {
  DrawList list{kViewport, {quad({{0, 0}, kViewport}, makeBitmap({4, 4}))}, {}};
  EXPECT_EQ(draw(list).at(100, 100).red, 0);
}

TEST_P(RendererPixels, framesDoNotShineThroughEachOther) {
  drawQuads({ColorQuad{{{0, 0}, kViewport}, {1, 1, 1, 1}, 1}});
  EXPECT_EQ(drawQuads({}).at(100, 100).red, 0);
}

}  // namespace
}  // namespace lumivane

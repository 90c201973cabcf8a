// Whole scenes, compared with pictures that were looked at.
#include "tests/compositor/RendererTest.h"
#include "tests/support/GoldenImage.h"
#include "tests/support/TestScenery.h"

namespace lumivane {
namespace {

class GoldenTest : public RendererTest {
 protected:
  void expectGolden(double seconds, const std::string& name) {
    EXPECT_TRUE(matchesGolden(drawAt(seconds), LUMIVANE_GOLDEN_FOLDER, name));
  }
  // A made-up line of text: two rows of bars in white, on transparent ground.
  static BitmapRef textPicture() {
    return makeBitmap({200, 40}, [](int x, int y) {
      const bool row = (y >= 6 && y < 16) || (y >= 24 && y < 34);
      const bool ink = row && x >= 4 && x < 190 && x % 9 < 5 && !(x > 120 && y > 20);
      return ink ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 0};
    });
  }
  Layer* addText() {
    Layer* text = root.addSublayer(std::make_unique<Layer>());
    text->edit([](LayerProperties& p) {
      p.bounds = {{0, 0}, {200, 40}};
      p.anchorPoint = {0, 0};
      p.position = {14, 14};
      p.zPosition = 1;
      p.contents = textPicture();
      p.shadow = {{0, 0, 0, 1}, 0.5, 7, {0, 0}, RectPt{{0, 0}, {200, 40}}};
    });
    return text;
  }

  const BitmapRef landscape = landscapePicture({900, 600});
  const BitmapRef portrait = portraitPicture({400, 600});
};

TEST_F(GoldenTest, fit) {
  root.addSublayer(plainPictureLayer(portrait, kViewport));
  expectGolden(0, "fit");
}

TEST_F(GoldenTest, fill) {
  root.addSublayer(plainPictureLayer(landscape, kViewport))->edit([](LayerProperties& p) {
    p.contentsGravity = ContentsGravity::ResizeAspectFill;
  });
  expectGolden(0, "fill");
}

TEST_F(GoldenTest, pan) {
  root.addSublayer(panningPictureLayer(landscape, kViewport, {{0, 40}, {640, 360}},
                                       {{200, 180}, {700, 393.75}}, 10, Seconds{0}));
  expectGolden(0, "pan-begin");
  expectGolden(3.7, "pan-middle");
  expectGolden(10, "pan-end");
  expectGolden(16.3, "pan-middle");  // on the way back
}

TEST_F(GoldenTest, zoom) {
  Layer* layer = root.addSublayer(plainPictureLayer(portrait, kViewport));
  layer->addAnimation(
      swinging(KeyPath::BoundsSize, SizePt{320 / 1.3, 180 / 1.3}, SizePt{320 * 1.3, 180 * 1.3}, 10), "zoom",
      Seconds{0});
  expectGolden(1.5, "zoom-small");
  expectGolden(9, "zoom-large");
}

TEST_F(GoldenTest, fade) {
  Layer* old = root.addSublayer(plainPictureLayer(portrait, kViewport));
  Layer* fresh = root.addSublayer(panningPictureLayer(landscape, kViewport, {{0, 40}, {640, 360}},
                                                      {{200, 180}, {700, 393.75}}, 10, Seconds{0}));
  addFade(*fresh, 2, 0, 1, Seconds{0});
  addFade(*old, 1.95, 1, 0, Seconds{0});
  expectGolden(0, "fit");  // nothing of the new picture yet
  expectGolden(1, "fade-middle");
  expectGolden(2.5, "fade-after");
}

TEST_F(GoldenTest, pauseAndResume) {
  Layer* layer = root.addSublayer(panningPictureLayer(landscape, kViewport, {{0, 40}, {640, 360}},
                                                      {{200, 180}, {700, 393.75}}, 10, Seconds{0}));
  pauseLayer(*layer, Seconds{3.7});
  expectGolden(60, "pan-middle");
  resumeLayer(*layer, Seconds{100});
  expectGolden(106.3, "pan-end");
}

TEST_F(GoldenTest, orientations) {
  for (int code = 1; code <= 8; ++code) {
    root.addSublayer(std::make_unique<Layer>())->edit([&](LayerProperties& p) {
      p.contents = letterPicture(code);
      p.bounds = {{0, 0}, {60, 80}};
      p.anchorPoint = {0, 0};
      p.position = {10.0 + (code - 1) % 4 * 80, code <= 4 ? 95.0 : 5.0};
    });
  }
  expectGolden(0, "orientations");
}

TEST_F(GoldenTest, textWithShadow) {
  root.addSublayer(plainPictureLayer(landscape, kViewport))->edit([](LayerProperties& p) {
    p.contentsGravity = ContentsGravity::ResizeAspectFill;
  });
  addText();
  root.addSublayer(std::make_unique<Layer>())->edit([](LayerProperties& p) {
    p.bounds = {{0, 0}, {120, 60}};
    p.position = {240, 130};
    p.zPosition = 1;
    p.backgroundColor = {0.5, 0.5, 0.5, 0.3F};
    p.shadow = {{0, 0, 0, 1}, 1, 4, {0, 0}, RectPt{{0, 0}, {120, 60}}};
  });
  expectGolden(0, "text");
}

TEST_F(GoldenTest, aPictureHeldReadyIsNotSeen) {
  root.addSublayer(plainPictureLayer(portrait, kViewport));
  root.addSublayer(plainPictureLayer(landscape, kViewport))->edit([](LayerProperties& p) {
    p.opacity = 0;
    p.zPosition = -10;
  });
  expectGolden(0, "fit");
}

// The fade dips a little, as two pictures blended over black do; it must neither jump nor go dark.
TEST_F(GoldenTest, aFadeBetweenEqualPicturesDipsOnlyAsBlendingDoes) {
  const BitmapRef one = makeBitmap({32, 18}, Rgba{200, 200, 200, 255});
  const BitmapRef two = makeBitmap({32, 18}, Rgba{200, 200, 200, 255});
  Layer* old = root.addSublayer(plainPictureLayer(one, kViewport));
  Layer* fresh = root.addSublayer(plainPictureLayer(two, kViewport));
  addFade(*fresh, 2, 0, 1, Seconds{0});
  addFade(*old, 1.95, 1, 0, Seconds{0});
  for (double time = 0; time <= 2; time += 0.125) {
    const double in = eased(TimingCurve::EaseInEaseOut, time / 2);
    const double out = 1 - eased(TimingCurve::EaseInEaseOut, time / 1.95);
    EXPECT_NEAR(drawAt(time).at(160, 90).red, 200 * (in + out * (1 - in)), 1.01) << "at " << time;
  }
}

}  // namespace
}  // namespace lumivane

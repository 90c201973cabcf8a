#include "imaging/LayerText.h"

#include "tests/support/FakeTextRenderer.h"

namespace lumivane {
namespace {

struct LayerTextTest : testing::Test {
  FakeTextRenderer renderer;
  Layer layer;
  LayerText text;
  TextLayoutRequest request{
      .text = "hello", .fontSizePt = 20, .screen = {1000, 600}, .adjustWidth = true, .showImagePath = true};
  double scale = 1;

  LayerTextTest() { place({14, 14}); }
  void place(PointPt position) {
    layer.edit([&](LayerProperties& p) {
      p.anchorPoint = {0, 0};
      p.position = position;
    });
  }
  // How many bitmaps and how many changes of the layer setting the text makes.
  std::pair<int, int> costOfSetting() {
    const int renders = renderer.renders;
    const std::uint64_t revision = layer.treeRevision();
    text.set(layer, renderer, request, scale);
    return {renderer.renders - renders, static_cast<int>(layer.treeRevision() - revision)};
  }
};

constexpr std::pair kAnew{1, 1};
constexpr std::pair kNothing{0, 0};

TEST_F(LayerTextTest, givesTheLayerItsTextAndItsSize) {
  EXPECT_EQ(costOfSetting(), kAnew);
  const LayerProperties& p = layer.properties();
  EXPECT_TRUE(p.contents);
  EXPECT_EQ(p.contentsGravity, ContentsGravity::LowerLeft);
  EXPECT_EQ(p.bounds, (RectPt{{0, 0}, {5 * 10 + 0.3 * 20, 24 + 0.2 * 20}}));
  EXPECT_EQ(p.shadow.path, p.bounds);
  EXPECT_EQ(renderer.renderedSize, p.bounds.size);
}

TEST_F(LayerTextTest, theSameTextIsSetOnce) {
  EXPECT_EQ(costOfSetting(), kAnew);
  renderer.measured.clear();
  for (int i = 0; i < 100; ++i) EXPECT_EQ(costOfSetting(), kNothing);
  EXPECT_TRUE(renderer.measured.empty());
}

TEST_F(LayerTextTest, whateverChangesMakesItAnew) {
  static_cast<void>(costOfSetting());
  const std::vector<std::function<void()>> changes = {
      [&] { request.text += "\nmore"; },
      [&] { request.fontSizePt = 24; },
      [&] { request.screen.width = 800; },
      [&] { request.screen.height = 500; },
      [&] { request.adjustWidth = false; },
      [&] { request.showImagePath = false; },
      [&] { scale = 1.25; },
      [&] {
        place({7, 7});
      },
  };
  for (const auto& change : changes) {
    change();
    EXPECT_EQ(costOfSetting(), kAnew);
    EXPECT_EQ(costOfSetting(), kNothing);
  }
  EXPECT_EQ(renderer.renderedScale, 1.25);
}

TEST_F(LayerTextTest, whatLiesBeyondTheScreenHasNoPixels) {
  request.text = std::string(500, 'x');
  request.showImagePath = false;
  static_cast<void>(costOfSetting());
  EXPECT_NEAR(layer.properties().bounds.size.width, 1006, 1e-9);
  EXPECT_NEAR(renderer.renderedSize.width, 1000 - 14, 1e-9);
  EXPECT_NEAR(renderer.renderedSize.height, 28, 1e-9);
}

TEST_F(LayerTextTest, nonsensicalFontSizesTakeNoMorePixelsThanTheScreen) {
  for (const double size : {0.0, 1.0, 10'000.0, 4'294'967'295.0}) {
    request.fontSizePt = size;
    EXPECT_EQ(costOfSetting(), kAnew);
    EXPECT_GE(renderer.renderedSize.width, 0);
    EXPECT_LE(renderer.renderedSize.width, 1000);
    EXPECT_GE(renderer.renderedSize.height, 0);
    EXPECT_LE(renderer.renderedSize.height, 600);
  }
  request.fontSizePt = 20;
  request.screen = {};
  EXPECT_EQ(costOfSetting(), kAnew);
  EXPECT_EQ(renderer.renderedSize, SizePt{});
}

TEST_F(LayerTextTest, aLayerInTheMiddleMayTakeTheWholeScreen) {
  layer.edit([](LayerProperties& p) {
    p.anchorPoint = {0.5, 0.5};
    p.position = {500, 300};
  });
  request.adjustWidth = false;
  request.text = std::string(99, 'x');
  static_cast<void>(costOfSetting());
  EXPECT_NEAR(renderer.renderedSize.width, 996, 1e-9);
  request.text = std::string(200, 'x');
  static_cast<void>(costOfSetting());
  EXPECT_NEAR(renderer.renderedSize.width, 1000, 1e-9);
}

}  // namespace
}  // namespace lumivane

// How much of a picture is sent to the GPU: the mip levels that can be seen, each once, and no byte more.
#include <gtest/gtest.h>

#include <cstdlib>

#include "compositor/model/Evaluation.h"
#include "compositor/render/Renderer.h"
#include "tests/support/FakeGl.h"
#include "tests/support/LayerScenes.h"
#include "tests/support/RealClock.h"

namespace lumivane {
namespace {

constexpr SizePt kFullHd{1920, 1080};
constexpr SizePx kPhoto{6000, 4000};  // 24 megapixels

// Pages that nobody touches: the size of a photo counts here, not what is on it.
BitmapRef untouchedBitmap(SizePx size, OrientationCode orientation = 1) {
  const std::size_t bytes = packedLevelsBytes(size);
  auto* const memory = static_cast<std::byte*>(std::calloc(bytes, 1));
  PixelBuffer pixels(memory, bytes, [](std::byte* data, std::size_t) { std::free(data); });
  return std::make_shared<const Bitmap>(std::move(pixels), packedLevels(size), orientation, true);
}

// Of all levels from this one on, by the sizes alone.
std::size_t bytesFrom(int level, SizePx size) {
  std::size_t bytes = 0;
  for (; size.width > 1 || size.height > 1;
       size = {std::max(1, size.width / 2), std::max(1, size.height / 2)}) {
    if (level-- <= 0)
      bytes += static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 4;
  }
  return bytes + 4;
}

class UploadedBytesTest : public testing::Test {
 protected:
  void show(SizePt screen = kFullHd, double scale = 1) {
    renderer.want(evaluate(*makeFrameSnapshot(root, screen, scale), Seconds{1}).wanted);
    while (renderer.upload(std::chrono::milliseconds{4}).pending) {
    }
  }
  // The part of the photo's width that a pan shows at least.
  void addPan(double share, const BitmapRef& picture) {
    const double width = share * picture->displaySize().width;
    const RectPt part{{0, 0}, {width, width * 9 / 16}};
    const RectPt larger{{0, 0}, {width * 1.1, width * 1.1 * 9 / 16}};
    root.addSublayer(panningPictureLayer(picture, kFullHd, part, larger, 10, Seconds{0}));
  }
  // Ready for a pan across seven tenths of its width.
  Layer* hold(const BitmapRef& picture) {
    Layer* const layer = root.addSublayer(plainPictureLayer(picture, kFullHd));
    layer->edit([](LayerProperties& p) {
      p.opacity = 0;
      p.bounds.size = {kFullHd.width / 0.7, kFullHd.width / 0.7};
    });
    return layer;
  }
  [[nodiscard]] std::size_t sent() const { return gl.bytesSentOf(*photo); }

  FakeGl gl;
  RealClock clock;
  Renderer renderer{clock};
  Layer root;
  const BitmapRef photo = untouchedBitmap(kPhoto);
};

TEST_F(UploadedBytesTest, theSizesOfTheLevelsAddUp) {
  EXPECT_EQ(bytesFrom(0, {4, 2}), 4U * (8 + 2 + 1));
  EXPECT_EQ(bytesFrom(1, {4, 2}), 4U * (2 + 1));
  EXPECT_EQ(bytesFrom(0, {5, 1}), 4U * (5 + 2 + 1));
  EXPECT_EQ(bytesFrom(0, kPhoto), packedLevelsBytes(kPhoto));
}

// Its rows are made on the way, in pieces that lie nowhere in the picture.
TEST_F(UploadedBytesTest, aPhotoInPlanesGoesAsOneInRgbaDoes) {
  PlanarLayout layout = packedPlanes(kPhoto, Chroma::Half);
  PixelBuffer pixels = PixelBuffer::allocate(layout.bytes);
  root.addSublayer(
      plainPictureLayer(std::make_shared<const Bitmap>(std::move(pixels), std::move(layout), 1), kFullHd));
  show();
  std::size_t bytes = 0;
  for (const FakeGl::Sending& sending : gl.sendings) bytes += sending.bytes;
  EXPECT_EQ(bytes, bytesFrom(1, kPhoto));
  EXPECT_EQ(gl.storages, (std::vector<FakeGl::Storage>{{{3000, 2000}, 12}}));
}

TEST_F(UploadedBytesTest, aStillPhotoOnAFullHdScreenGoesWithoutItsFullSize) {
  root.addSublayer(plainPictureLayer(photo, kFullHd));  // 1620 x 1080: 3.7 pixels of the photo on one
  show();
  EXPECT_EQ(sent(), bytesFrom(1, kPhoto));
  EXPECT_EQ(gl.storages, (std::vector<FakeGl::Storage>{{{3000, 2000}, 12}}));
  EXPECT_LT(sent(), packedLevelsBytes(kPhoto) / 3) << "three quarters of the bytes stay where they are";
}

TEST_F(UploadedBytesTest, nothingIsSentAgainFrameAfterFrame) {
  root.addSublayer(plainPictureLayer(photo, kFullHd));
  for (int frame = 0; frame < 100; ++frame) show();
  EXPECT_EQ(sent(), bytesFrom(1, kPhoto));
}

TEST_F(UploadedBytesTest, aSmallWindowTakesSmallLevels) {
  const SizePt window{640, 360};
  root.addSublayer(plainPictureLayer(photo, window));  // 11.1 pixels on one
  show(window);
  EXPECT_EQ(sent(), bytesFrom(3, kPhoto));
}

TEST_F(UploadedBytesTest, twoPixelsAPointCount) {
  root.addSublayer(plainPictureLayer(photo, kFullHd));  // 1.85 pixels on one
  show(kFullHd, 2);
  EXPECT_EQ(sent(), bytesFrom(0, kPhoto));
}

TEST_F(UploadedBytesTest, aQuarterTurnCounts) {
  const BitmapRef upright = untouchedBitmap(kPhoto, 6);  // seen as 4000 x 6000, so 720 x 1080: 5.6 on one
  root.addSublayer(plainPictureLayer(upright, kFullHd));
  show();
  EXPECT_EQ(gl.bytesSentOf(*upright), bytesFrom(2, kPhoto));
}

TEST_F(UploadedBytesTest, aPanSendsWhatItsClosestLookSamples) {
  addPan(0.7, photo);  // 2.2 pixels on one
  show();
  EXPECT_EQ(sent(), bytesFrom(1, kPhoto));
  addPan(0.6, photo);  // 1.9
  show();
  EXPECT_EQ(sent(), bytesFrom(1, kPhoto) + bytesFrom(0, kPhoto)) << "a second texture in place of the first";
}

TEST_F(UploadedBytesTest, aPhotoHeldReadyIsNotSentAgainWhenItIsShown) {
  Layer* const ahead = hold(photo);
  show();
  EXPECT_EQ(sent(), bytesFrom(1, kPhoto));
  addPan(0.7, photo);
  show();
  root.removeSublayer(ahead);
  show();
  EXPECT_EQ(sent(), bytesFrom(1, kPhoto));
}

TEST_F(UploadedBytesTest, aDissolveSendsNothingMore) {
  const BitmapRef next = untouchedBitmap(kPhoto);
  addPan(0.7, photo);
  hold(next);
  show();
  addFade(*root.sublayers().front(), 3, 1, 0, Seconds{0});
  addPan(0.8, next);
  addFade(*root.sublayers().back(), 3, 0, 1, Seconds{0});
  for (int frame = 0; frame < 10; ++frame) show();
  EXPECT_EQ(sent(), bytesFrom(1, kPhoto));
  EXPECT_EQ(gl.bytesSentOf(*next), bytesFrom(1, kPhoto));
}

TEST_F(UploadedBytesTest, onePhotoAfterAnotherIsSentOnce) {
  for (int i = 0; i < 8; ++i) {
    const BitmapRef next = untouchedBitmap(kPhoto);
    gl.sendings.clear();  // a photo may lie where one lay that is gone
    Layer* const ahead = hold(next);
    show();
    addPan(0.75, next);
    root.removeSublayer(ahead);
    if (root.sublayers().size() > 1) root.removeSublayer(root.sublayers().front().get());
    show();
    EXPECT_EQ(gl.bytesSentOf(*next), bytesFrom(1, kPhoto)) << "photo " << i;
  }
}

}  // namespace
}  // namespace lumivane

#include "compositor/render/TextureStore.h"

#include <gtest/gtest.h>

#include "tests/support/OffscreenGl.h"

namespace lumivane {
namespace {

using std::chrono::milliseconds;

// Every look at it takes a millisecond: so many looks, so many slices.
class TickingClock final : public Clock {
 public:
  [[nodiscard]] MediaTime now() const override { return now_ += milliseconds{1}; }
  [[nodiscard]] WallTime wallTime() const override { return {}; }

 private:
  mutable MediaTime now_;
};

class TextureStoreTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!gl.makeCurrent()) GTEST_SKIP() << "no EGL without a window system here";
    store = std::make_unique<TextureStore>(clock, 4096);
  }
  void want(std::vector<WantedTexture> wanted) { store->want(wanted); }
  void uploadAll() {
    while (store->upload(milliseconds{10}).pending) {
    }
  }
  static int parameter(GLuint texture, GLenum name) {
    GLint value = -1;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
    return value;
  }
  static SizePx levelSize(GLuint texture, int level) {
    SizePx size;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_WIDTH, &size.width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_HEIGHT, &size.height);
    return size;
  }
  // The first pixel of a level, as the texture has it.
  static Rgba firstPixel(GLuint texture, int level) {
    const SizePx size = levelSize(texture, level);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size.width * size.height * 4));
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexImage(GL_TEXTURE_2D, level, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
    return {bytes[0], bytes[1], bytes[2], bytes[3]};
  }

  TickingClock clock;
  OffscreenGl gl{{16, 16}};
  std::unique_ptr<TextureStore> store;
};

TEST_F(TextureStoreTest, knowsNothingAtFirst) {
  const BitmapRef bitmap = makeBitmap({4, 4});
  EXPECT_EQ(store->texture(bitmap), 0U);
  EXPECT_FALSE(store->upload(milliseconds{10}).pending);
}

TEST_F(TextureStoreTest, sendsOnlyTheLevelsThatAreWanted) {
  const BitmapRef bitmap = makeBitmap({64, 32}, Rgba{10, 20, 30, 255});
  want({{bitmap, 2, true}});
  EXPECT_EQ(store->texture(bitmap), 0U);
  uploadAll();
  const GLuint texture = store->texture(bitmap);
  ASSERT_NE(texture, 0U);
  EXPECT_EQ(levelSize(texture, 0), (SizePx{16, 8}));
  EXPECT_EQ(levelSize(texture, 4), (SizePx{1, 1}));
  EXPECT_EQ(parameter(texture, GL_TEXTURE_BASE_LEVEL), 0);
  EXPECT_EQ(parameter(texture, GL_TEXTURE_MAX_LEVEL), 4);
  EXPECT_EQ(firstPixel(texture, 0), (Rgba{10, 20, 30, 255}));
}

TEST_F(TextureStoreTest, smallLevelsComeFirst) {
  const BitmapRef bitmap = makeBitmap({1024, 512});  // 2 MB in its first level
  want({{bitmap, 0, true}});
  const UploadProgress first = store->upload(Nanoseconds{0});
  EXPECT_TRUE(first.pending);
  EXPECT_TRUE(first.shownBetter);
  const GLuint texture = store->texture(bitmap);
  ASSERT_NE(texture, 0U);
  const int coarse = parameter(texture, GL_TEXTURE_BASE_LEVEL);
  EXPECT_GT(coarse, 0);
  EXPECT_GE(levelSize(texture, coarse).width, 128);
  uploadAll();
  EXPECT_EQ(store->texture(bitmap), texture);
  EXPECT_EQ(parameter(texture, GL_TEXTURE_BASE_LEVEL), 0);
}

TEST_F(TextureStoreTest, staysWithinItsBudget) {
  const BitmapRef bitmap = makeBitmap({2048, 2048});  // 16 MB: 32 slices and more
  want({{bitmap, 0, false}});
  int calls = 1;
  while (store->upload(milliseconds{4}).pending) ++calls;
  // Four slices a call: the clock is looked at before the first and after each.
  EXPECT_NEAR(calls, 42.7 / 4, 1.5);
}

TEST_F(TextureStoreTest, whatIsHeldReadyDoesNotCountAsShownBetter) {
  want({{makeBitmap({256, 256}), 0, false}});
  EXPECT_FALSE(store->upload(milliseconds{100}).shownBetter);
}

TEST_F(TextureStoreTest, whatIsShownComesBeforeWhatIsHeldReady) {
  const BitmapRef shown = makeBitmap({1024, 512});
  const BitmapRef ahead = makeBitmap({1024, 512});
  want({{shown, 0, true}, {ahead, 0, false}});
  while (parameter(store->texture(shown), GL_TEXTURE_BASE_LEVEL) != 0) {
    EXPECT_EQ(store->texture(ahead), 0U);
    ASSERT_TRUE(store->upload(Nanoseconds{0}).pending);
  }
  uploadAll();
  EXPECT_NE(store->texture(ahead), 0U);
}

TEST_F(TextureStoreTest, aBlankPictureComesBeforeTheDetailOfAnother) {
  const BitmapRef large = makeBitmap({1024, 1024});
  const BitmapRef blank = makeBitmap({1024, 512});
  want({{large, 0, true}});
  static_cast<void>(store->upload(Nanoseconds{0}));
  want({{large, 0, true}, {blank, 0, true}});
  static_cast<void>(store->upload(Nanoseconds{0}));
  EXPECT_NE(store->texture(blank), 0U);
  EXPECT_GT(parameter(store->texture(large), GL_TEXTURE_BASE_LEVEL), 0);
}

TEST_F(TextureStoreTest, moreDetailTakesThePlaceOfLessWithoutAGap) {
  const BitmapRef bitmap = makeBitmap({1024, 1024}, Rgba{1, 2, 3, 255});
  want({{bitmap, 2, true}});
  uploadAll();
  const GLuint small = store->texture(bitmap);
  want({{bitmap, 0, true}});
  EXPECT_EQ(store->texture(bitmap), small);
  while (store->upload(Nanoseconds{0}).pending) ASSERT_NE(store->texture(bitmap), 0U);
  const GLuint large = store->texture(bitmap);
  EXPECT_NE(large, small);
  EXPECT_EQ(levelSize(large, 0), (SizePx{1024, 1024}));
  EXPECT_EQ(firstPixel(large, 0), (Rgba{1, 2, 3, 255}));
  want({{bitmap, 2, true}});  // less is wanted again: what is there stays
  EXPECT_FALSE(store->upload(Nanoseconds{0}).pending);
  EXPECT_EQ(store->texture(bitmap), large);
}

TEST_F(TextureStoreTest, freesWhatIsNotWantedAnyMore) {
  const BitmapRef one = makeBitmap({64, 64});
  const BitmapRef two = makeBitmap({32, 32});
  want({{one, 0, true}, {two, 0, true}});
  uploadAll();
  const GLuint gone = store->texture(one);
  want({{two, 0, true}});
  EXPECT_EQ(store->count(), 1U);
  EXPECT_EQ(store->texture(one), 0U);
  EXPECT_NE(store->texture(two), 0U);
  want({{two, 0, true}, {makeBitmap({16, 16}), 0, true}});  // the spare one is of no use for this
  EXPECT_EQ(glIsTexture(gone), GL_FALSE);
}

TEST_F(TextureStoreTest, usesTheStorageOfADroppedPictureOfTheSameSizeAgain) {
  const BitmapRef one = makeBitmap({64, 32}, Rgba{10, 20, 30, 255});
  want({{one, 1, true}});
  uploadAll();
  const GLuint texture = store->texture(one);
  const BitmapRef two = makeBitmap({64, 32}, Rgba{70, 80, 90, 255});
  want({{two, 1, true}});
  EXPECT_EQ(store->texture(two), 0U);  // nothing of the old picture is seen in its place
  uploadAll();
  EXPECT_EQ(store->texture(two), texture);
  EXPECT_EQ(firstPixel(texture, 0), (Rgba{70, 80, 90, 255}));
}

TEST_F(TextureStoreTest, letsThePixelsGoOnceTheyAreSent) {
  BitmapRef bitmap = makeBitmap({64, 64});
  const std::weak_ptr<const Bitmap> watch = bitmap;
  want({{bitmap, 0, true}});
  uploadAll();
  bitmap.reset();
  EXPECT_TRUE(watch.expired());
}

TEST_F(TextureStoreTest, keepsThePixelsWhileTheyAreBeingSent) {
  BitmapRef bitmap = makeBitmap({1024, 1024});
  const std::weak_ptr<const Bitmap> watch = bitmap;
  want({{bitmap, 0, true}});
  bitmap.reset();
  EXPECT_FALSE(watch.expired());
  uploadAll();
  EXPECT_TRUE(watch.expired());
}

TEST_F(TextureStoreTest, leavesOutLevelsThatTheGlDoesNotTake) {
  TextureStore small(clock, 32);
  const BitmapRef bitmap = makeBitmap({128, 16}, Rgba{5, 6, 7, 255});
  const std::vector<WantedTexture> wanted{{bitmap, 0, true}};
  small.want(wanted);
  while (small.upload(milliseconds{10}).pending) {
  }
  EXPECT_EQ(levelSize(small.texture(bitmap), 0), (SizePx{32, 4}));
}

TEST_F(TextureStoreTest, aPictureTooLargeInAllItsLevelsIsNeverThere) {
  TextureStore small(clock, 32);
  const BitmapRef bitmap = std::make_shared<const Bitmap>(
      PixelBuffer::allocate(64 * 4), std::vector<BitmapLevel>{{0, {64, 1}, 256}}, 1, true);
  const std::vector<WantedTexture> wanted{{bitmap, 0, true}};
  small.want(wanted);
  EXPECT_FALSE(small.upload(milliseconds{10}).pending);
  EXPECT_EQ(small.texture(bitmap), 0U);
}

TEST_F(TextureStoreTest, readsRowsWithAnyDistanceBetweenThem) {
  for (const std::size_t stride : {std::size_t{12}, std::size_t{10}}) {
    PixelBuffer buffer = PixelBuffer::allocate(stride * 3);
    for (std::size_t y = 0; y < 2; ++y) buffer.bytes()[y * stride] = std::byte(100 + y);
    const BitmapRef bitmap = std::make_shared<const Bitmap>(
        std::move(buffer), std::vector<BitmapLevel>{{0, {2, 2}, stride}}, 1, false);
    want({{bitmap, 0, true}});
    uploadAll();
    std::uint8_t bytes[16];
    glBindTexture(GL_TEXTURE_2D, store->texture(bitmap));
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
    EXPECT_EQ(bytes[0], 100) << stride;
    EXPECT_EQ(bytes[8], 101) << stride;
  }
}

}  // namespace
}  // namespace lumivane

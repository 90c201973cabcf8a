// The common frame of the render thread, a picture that goes on moving: it takes no memory. The real loop and the real
// renderer run here without a thread and without a driver.
#include <gtest/gtest.h>

#include "compositor/render/FrameLoop.h"
#include "compositor/render/Renderer.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/FakeGl.h"
#include "tests/support/LayerScenes.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TestBitmaps.h"

namespace lumivane {
namespace {

using std::chrono::milliseconds;

constexpr SizePt kScreen{320, 180};
constexpr std::size_t kSettlingFrames = 100;  // textures are sent, vectors find their size
constexpr std::size_t kCountedFrames = 500;

// Every look takes longer than a frame, so that nothing is waited for.
class SteppingClock final : public Clock {
 public:
  [[nodiscard]] MediaTime now() const override { return now_ += milliseconds{10}; }
  [[nodiscard]] WallTime wallTime() const override { return {}; }

 private:
  mutable MediaTime now_;
};

// Counts from one swap to the next what was allocated, and ends the loop after enough of them.
class CountingSurface final : public GlSurface {
 public:
  CountingSurface(SnapshotMailbox& mailbox, FakeGl& gl) : mailbox_(mailbox), gl_(gl) {}
  bool makeCurrent() override { return true; }
  void doneCurrent() override {}
  void swapBuffers() override {
    ++frames;
    if (frames == kSettlingFrames) {
      gl_.drawings = 0;
      settled_ = allocationsOfThisThread();
    }
    if (frames < kSettlingFrames + kCountedFrames) return;
    allocations = allocationsOfThisThread() - settled_;
    mailbox_.stop();
  }
  [[nodiscard]] SizePx sizePx() const override { return {320, 180}; }
  [[nodiscard]] Seconds refreshInterval() const override { return Seconds{0.001}; }
  [[nodiscard]] bool drawable() const override { return true; }

  std::size_t frames = 0;
  std::uint64_t allocations = 0;

 private:
  SnapshotMailbox& mailbox_;
  FakeGl& gl_;
  std::uint64_t settled_ = 0;
};

class CountingWatcher final : public FrameWatcher {
 public:
  void frameShown(const ShownFrame& frame) override { moving += frame.moving ? 1 : 0; }
  std::size_t moving = 0;
};

class FrameAllocationsTest : public testing::Test {
 protected:
  FrameAllocationsTest() {
    root.edit([](LayerProperties& p) { p.bounds = {{0, 0}, kScreen}; });
  }
  Layer* addMovingPicture() {
    const RectPt from{{0, 20}, {448, 252}};
    const RectPt to{{128, 100}, {512, 288}};
    return root.addSublayer(
        panningPictureLayer(blankBitmap({640, 400}), kScreen, from, to, 1000, Seconds{0}));
  }
  void addText() {
    auto text = std::make_unique<Layer>();
    text->edit([](LayerProperties& p) {
      p.bounds = {{0, 0}, {100, 20}};
      p.contents = blankBitmap({100, 20});
      p.contentsGravity = ContentsGravity::LowerLeft;
      p.zPosition = 1;
      p.backgroundColor = {0, 0, 0, 0.5F};
      p.shadow.opacity = 0.5;
      p.shadow.path = RectPt{{0, 0}, {100, 20}};
    });
    root.addSublayer(std::move(text));
  }
  void addPictureHeldReady() {
    root.addSublayer(plainPictureLayer(blankBitmap({600, 400}), kScreen))->edit([](LayerProperties& p) {
      p.opacity = 0;
      p.zPosition = -10;
    });
  }
  // What the counted frames allocated, all together.
  [[nodiscard]] std::uint64_t allocations() {
    SnapshotMailbox mailbox;
    CountingSurface surface(mailbox, gl);
    mailbox.publish(makeFrameSnapshot(root, kScreen, 1));
    mailbox.setExposed(true);
    FrameLoop(
        surface, clock, log, mailbox, [this] { return std::make_unique<Renderer>(clock); }, &watcher)
        .run();
    EXPECT_EQ(surface.frames, kSettlingFrames + kCountedFrames);
    EXPECT_EQ(watcher.moving, surface.frames) << "something moved all the time";
    EXPECT_TRUE(log.entries().empty());
    return surface.allocations;
  }

  FakeGl gl;
  SteppingClock clock;
  RecordingLog log;
  CountingWatcher watcher;
  Layer root;
};

TEST(AllocationCount, counts) {
  std::vector<int> numbers;
  EXPECT_EQ(allocationsDuring([&] { numbers.push_back(1); }), 1U);
  EXPECT_EQ(allocationsDuring([&] { numbers.front() = 2; }), 0U);
}

TEST_F(FrameAllocationsTest, aMovingPictureTakesNoMemory) {
  addMovingPicture();
  EXPECT_EQ(allocations(), 0U);
  EXPECT_EQ(gl.drawings, kCountedFrames);
}

TEST_F(FrameAllocationsTest, aMovingPictureAmongEverythingElseTakesNoMemory) {
  addPictureHeldReady();
  addMovingPicture();
  addText();
  EXPECT_EQ(allocations(), 0U);
  EXPECT_EQ(gl.drawings, 4 * kCountedFrames) << "picture, shadow, ground and text";
}

TEST_F(FrameAllocationsTest, aDissolveTakesNoMemory) {
  addFade(*addMovingPicture(), 1000, 1, 0, Seconds{0});
  addFade(*addMovingPicture(), 1000, 0, 1, Seconds{0});
  addText();
  EXPECT_EQ(allocations(), 0U);
  EXPECT_EQ(gl.drawings, 4 * kCountedFrames) << "both pictures in one";
}

}  // namespace
}  // namespace lumivane

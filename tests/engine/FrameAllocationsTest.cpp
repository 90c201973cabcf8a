// The view's common frame, fifty times a second for hours, in which nothing is due: it takes no memory.
#include "tests/support/AllocationCount.h"
#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

struct ViewFrameAllocationsTest : ViewTest {
  ViewFrameAllocationsTest() {
    configure([](DisplaySettings& s) {
      s.kenBurnsIsOn_ = true;
      s.crossDissolve_ = true;
      s.durationPerImage_ = 3600;
    });
    listPictures(20);
  }
  // A picture stands, the next one waits, the dissolve has ended, and all that was to be said has been said.
  void settle() {
    start();
    run(Seconds{60});
    ASSERT_TRUE(view->prefetchSlot().full());
    ASSERT_NE(view->currentLayer()->properties().contents, nullptr);
  }
  [[nodiscard]] std::uint64_t allocationsOfFrames() {
    const std::string shown = view->filename();
    const std::uint64_t revision = view->mainLayer().treeRevision();
    const std::uint64_t allocations = allocationsDuring([&] {
      for (int frame = 0; frame < 1000; ++frame) {
        clock.advance(std::chrono::milliseconds(20));
        view->animateOneFrame();
        view->mainLayer().finishAnimations(mediaSeconds(clock.now()));
      }
    });
    EXPECT_EQ(view->filename(), shown);
    EXPECT_EQ(view->mainLayer().treeRevision(), revision) << "nothing was due";
    return allocations;
  }
};

TEST_F(ViewFrameAllocationsTest, whileAPictureMovesAndNoneIsDue) {
  settle();
  EXPECT_EQ(allocationsOfFrames(), 0U);
}

TEST_F(ViewFrameAllocationsTest, whileKeysWaitForOtherDisplays) {
  settle();
  for (DisplayNumber other = 2; other < 6; ++other)
    tables.pendingKeyEventsByDisplay[other] = {U'b', kNoModifiers, false};
  EXPECT_EQ(allocationsOfFrames(), 0U);
  EXPECT_EQ(tables.pendingKeyEventsByDisplay.size(), 4U);
}

TEST_F(ViewFrameAllocationsTest, whilePaused) {
  settle();
  press(U' ');
  clock.advance(std::chrono::hours(2));  // a change would be due
  EXPECT_EQ(allocationsOfFrames(), 0U);
}

TEST_F(ViewFrameAllocationsTest, whileBlank) {
  settle();
  press(U'b');
  clock.advance(std::chrono::hours(2));
  EXPECT_EQ(allocationsOfFrames(), 0U);
}

TEST_F(ViewFrameAllocationsTest, whileTheMotionIsFrozen) {
  settle();
  press(U'z');
  view->animateOneFrame();
  ASSERT_EQ(view->currentLayer()->properties().speed, 0);
  EXPECT_EQ(allocationsOfFrames(), 0U);
}

TEST_F(ViewFrameAllocationsTest, whileStopped) {
  settle();
  view->stopAnimation();
  EXPECT_EQ(allocationsOfFrames(), 0U);
}

TEST_F(ViewFrameAllocationsTest, whileTwoPicturesDissolve) {
  configure([](DisplaySettings& s) {
    s.kenBurnsIsOn_ = true;
    s.crossDissolve_ = true;
    s.crossDissolveDuration_ = 3;
    s.durationPerImage_ = 3600;
  });
  settle();
  press(kRightArrowCharacter);
  beat();
  ASSERT_NE(view->formerLayer(), nullptr);
  const std::uint64_t allocations = allocationsDuring([&] {
    for (int frame = 0; frame < 10; ++frame) {
      clock.advance(std::chrono::milliseconds(20));
      view->animateOneFrame();
      view->mainLayer().finishAnimations(mediaSeconds(clock.now()));
    }
  });
  EXPECT_NE(view->formerLayer(), nullptr) << "still dissolving";
  EXPECT_EQ(allocations, 0U);
}

}  // namespace
}  // namespace lumivane

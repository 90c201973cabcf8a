#include "app/PointerHiding.h"

#include "tests/support/FakeDesktop.h"

namespace lumivane {
namespace {

struct PointerHidingTest : testing::Test {
  VirtualClock clock;
  VirtualMainLoop loop{clock};
  FakeWindow window;
  PointerHiding pointer{window, clock, loop};
  void wait(int milliseconds) { loop.runFor(std::chrono::milliseconds(milliseconds)); }
};

TEST_F(PointerHidingTest, hidesAfterThreeSecondsOfRest) {
  EXPECT_TRUE(window.reportsMouseMoves);
  wait(2999);
  EXPECT_FALSE(window.cursorHidden);
  wait(1);
  EXPECT_TRUE(window.cursorHidden);
}

TEST_F(PointerHidingTest, comesBackWithTheMouse) {
  wait(4000);
  pointer.mouseMoved();
  EXPECT_FALSE(window.cursorHidden);
  wait(2999);
  EXPECT_FALSE(window.cursorHidden);
  wait(1);
  EXPECT_TRUE(window.cursorHidden);
}

TEST_F(PointerHidingTest, staysWhileTheMouseMoves) {
  for (int i = 0; i < 100; ++i) {
    wait(100);
    pointer.mouseMoved();
    EXPECT_LE(loop.waitingJobs(), 1U) << "moves do not pile up";
  }
  EXPECT_FALSE(window.cursorHidden);
  wait(3000);
  EXPECT_TRUE(window.cursorHidden);
}

TEST_F(PointerHidingTest, staysAwayInAShowThatStandsInForTheScreenSaver) {
  pointer.hideForGood();
  EXPECT_TRUE(window.cursorHidden);
  pointer.mouseMoved();
  wait(10000);
  EXPECT_TRUE(window.cursorHidden);
}

}  // namespace
}  // namespace lumivane

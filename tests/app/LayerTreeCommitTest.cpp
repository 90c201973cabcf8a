#include "app/LayerTreeCommit.h"

#include "tests/support/FakeDesktop.h"

namespace lumivane {
namespace {

struct LayerTreeCommitTest : testing::Test {
  VirtualClock clock;
  VirtualMainLoop loop{clock};
  FakeWindow window;
  Layer root;
  std::vector<std::shared_ptr<const FrameSnapshot>> published;
  LayerTreeCommit commit{root, window, [this](auto snapshot) { published.push_back(std::move(snapshot)); },
                         clock, loop};

  void fade(Seconds duration, std::function<void(bool)> didStop) {
    BasicAnimation animation;
    animation.duration = duration;
    animation.to = 1.0;
    animation.didStop = std::move(didStop);
    root.addAnimation(std::move(animation), "fade", mediaSeconds(clock.now()));
    commit.commit();
  }
};

TEST_F(LayerTreeCommitTest, publishesATreeOnceUntilItChanges) {
  commit.commit();
  commit.commit();
  ASSERT_EQ(published.size(), 1U);
  EXPECT_EQ(published[0]->viewport, (SizePt{1920, 1080}));
  root.edit([](LayerProperties& p) { p.opacity = 0.5; });
  root.edit([](LayerProperties& p) { p.hidden = true; });
  commit.commit();
  EXPECT_EQ(published.size(), 2U) << "one for all changes of a turn";
}

TEST_F(LayerTreeCommitTest, publishesAnewForAnotherSizeOrScale) {
  commit.commit();
  window.rectangle.size = {800, 600};
  commit.commit();
  window.pixelsPerPoint = 2;
  commit.commit();
  ASSERT_EQ(published.size(), 3U);
  EXPECT_EQ(published[1]->viewport, (SizePt{800, 600}));
  EXPECT_EQ(published[2]->scale, 2);
}

TEST_F(LayerTreeCommitTest, tellsAnAnimationThatItHasEnded) {
  int stops = 0;
  fade(Seconds{1.5}, [&](bool finished) { stops += finished ? 1 : 0; });
  loop.runFor(std::chrono::milliseconds(1499));
  EXPECT_EQ(stops, 0);
  loop.runFor(std::chrono::milliseconds(2));
  EXPECT_EQ(stops, 1);
  loop.runFor(std::chrono::seconds(10));
  EXPECT_EQ(stops, 1);
}

TEST_F(LayerTreeCommitTest, watchesOnlyTheNewestTree) {
  int stops = 0;
  fade(Seconds{1}, [&](bool) { ++stops; });
  root.edit([](LayerProperties& p) { p.speed = 0; });  // frozen: it never ends
  commit.commit();
  loop.runFor(std::chrono::seconds(60));
  EXPECT_EQ(stops, 0);
}

TEST_F(LayerTreeCommitTest, anAnimationThatEndsInAMonthIsToldAtItsTime) {
  int stops = 0;
  fade(std::chrono::hours(24 * 30), [&](bool) { ++stops; });
  loop.runFor(std::chrono::hours(24 * 30) - std::chrono::seconds(1));
  EXPECT_EQ(stops, 0);
  loop.runFor(std::chrono::seconds(1));
  EXPECT_EQ(stops, 1);
}

// Once every change of a tree whose motion ran for months left a timer behind that waited for its end.
TEST_F(LayerTreeCommitTest, doesNotPileUpTimersOfLongMotions) {
  fade(std::chrono::hours(24 * 300), [](bool) {});
  for (int i = 0; i < 500; ++i) {
    root.edit([](LayerProperties& p) { p.opacity *= 0.99; });
    commit.commit();
    loop.runFor(std::chrono::seconds(1));
  }
  EXPECT_LT(loop.waitingJobs(), 40U);
}

TEST_F(LayerTreeCommitTest, anEndMayBeginTheNextAnimation) {
  bool second = false;
  fade(Seconds{1}, [&](bool) { fade(Seconds{1}, [&](bool) { second = true; }); });
  loop.runFor(std::chrono::seconds(3));
  EXPECT_TRUE(second);
}

}  // namespace
}  // namespace lumivane

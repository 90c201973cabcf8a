#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

using ViewFrameLoopTest = ViewTest;

TEST_F(ViewFrameLoopTest, changesWhenThePeriodIsOverAndNotBefore) {
  listPictures(5);
  start();
  beat();
  const std::string first = view->filename();
  ASSERT_FALSE(first.empty());
  loop.runFor(std::chrono::milliseconds(9990));
  beat();
  EXPECT_EQ(view->filename(), first);
  loop.runFor(std::chrono::milliseconds(10));
  beat();
  EXPECT_NE(view->filename(), first);
}

TEST_F(ViewFrameLoopTest, lateAndMissedBeatsDoNoHarm) {
  listPictures(5);
  start();
  beat();
  const std::string first = view->filename();
  loop.runFor(std::chrono::hours(5));
  beat();
  EXPECT_NE(view->filename(), first);
  const std::string second = view->filename();
  beat();
  EXPECT_EQ(view->filename(), second) << "lost time is not made up for";
}

TEST_F(ViewFrameLoopTest, aWallClockThatJumpsChangesNothing) {
  listPictures(5);
  start();
  beat();
  const std::string first = view->filename();
  clock.jumpWallTime(std::chrono::hours(-24));
  run(Seconds{9.9});
  EXPECT_EQ(view->filename(), first);
  run(Seconds{0.2});
  EXPECT_NE(view->filename(), first);
}

TEST_F(ViewFrameLoopTest, aStoppedShowStandsStillAndSavesItsPlace) {
  listPictures(5);
  start();
  beat();
  const std::string first = view->filename();
  const int writes = files.writes;
  view->stopAnimation();
  EXPECT_EQ(log.countStartingWith("stop animation   (id = 0x"), 1U);
  EXPECT_EQ(files.writes, writes + 1);
  run(Seconds{100});
  EXPECT_EQ(view->filename(), first);
  view->startAnimation();
  EXPECT_EQ(log.countStartingWith("start animation  (id = 0x"), 1U);
  run(Seconds{0.02});
  EXPECT_NE(view->filename(), first);
}

TEST_F(ViewFrameLoopTest, nothingChangesWhilePaused) {
  listPictures(5);
  start();
  beat();
  const std::string first = view->filename();
  press(U' ');
  run(Seconds{1000});
  EXPECT_EQ(view->filename(), first);
  press(U' ');
  run(Seconds{0.02});
  EXPECT_NE(view->filename(), first);
}

TEST_F(ViewFrameLoopTest, onlyKeysOfOtherDisplaysComeThroughABlankScreen) {
  listPictures(5);
  start();
  beat();
  const std::string first = view->filename();
  press(U'b');
  run(Seconds{100});
  EXPECT_EQ(view->filename(), first);
  tables.pendingKeyEventsByDisplay[1] = {U'b', kNoModifiers, false};
  beat();
  EXPECT_TRUE(tables.pendingKeyEventsByDisplay.empty());
  run(Seconds{0.02});
  EXPECT_NE(view->filename(), first);
}

TEST_F(ViewFrameLoopTest, keysLeftForAnotherDisplayStay) {
  listPictures(2);
  start();
  tables.pendingKeyEventsByDisplay[9] = {U'b', kNoModifiers, false};
  run(Seconds{1});
  EXPECT_TRUE(tables.pendingKeyEventsByDisplay.contains(9));
}

TEST_F(ViewFrameLoopTest, withoutAFolderNothingIsShown) {
  withFolder = false;
  files.content.clear();
  configure([](DisplaySettings& s) {
    s.durationPerImage_ = 10;
    s.directoryBookmarks_ = emptyBookmarks();
  });
  listPictures(3);
  start();
  EXPECT_EQ(view->firstLine(), "Change pics folder in Preferences for monitor Color LCD");
  EXPECT_TRUE(view->firstLineIsError());
  run(Seconds{60});
  EXPECT_TRUE(view->filename().empty());
}

TEST_F(ViewFrameLoopTest, anEmptyListIsSaidOncePerPeriod) {
  start();
  beat();
  const std::string message = "No images. Please choose directory other than " + pictureFolder.path();
  EXPECT_EQ(view->firstLine(), message);
  EXPECT_EQ(log.count(message), 1U);
  run(Seconds{9.9});
  EXPECT_EQ(log.count(message), 1U);
  run(Seconds{0.2});
  EXPECT_EQ(log.count(message), 2U);
}

TEST_F(ViewFrameLoopTest, startNewCycleMakesTheVeryNextFrameChange) {
  configure([](DisplaySettings& s) { s.durationPerImage_ = 30; });
  listPictures(5);
  start();
  beat();
  const std::string first = view->filename();
  view->startNewCycle();
  beat();
  EXPECT_NE(view->filename(), first);
}

// --- Order and cycles ---

using ViewOrderTest = ViewTest;

TEST_F(ViewOrderTest, aPassIsAPermutationAndThenBeginsAnew) {
  listPictures(3);
  start();
  std::set<ImageIndex> pass;
  for (int i = 0; i < 3; ++i) pass.insert(view->nextImageIndex(0));
  EXPECT_EQ(pass, (std::set<ImageIndex>{0, 1, 2}));
  EXPECT_EQ(log.count("All images displayed. Starting over."), 0U);
  EXPECT_LT(view->nextImageIndex(0), 3U);
  EXPECT_TRUE(log.has("All images displayed. Starting over.", LogLevel::Information));
  EXPECT_EQ(view->firstLine(), "All images displayed. Starting over.");
  EXPECT_FALSE(view->firstLineIsError());
}

TEST_F(ViewOrderTest, aFreshListDropsWhatWasPrefetchedAndThenTheHistory) {
  listPictures(10);
  start();
  beat();
  runUntilChange();
  run(Seconds{2.1});
  ASSERT_TRUE(view->prefetchSlot().full());
  view->startNewCycleWithFreshImageList();
  EXPECT_FALSE(view->prefetchSlot().full());
  EXPECT_EQ(view->firstLine(), "Loading ..");
  ASSERT_TRUE(view->history().entries()[1].img);
  beat();
  EXPECT_TRUE(view->history().entries()[0].img);
  EXPECT_FALSE(view->history().entries()[1].img);
}

TEST_F(ViewOrderTest, settingsBeyondAllMeasureDoNoHarm) {
  listPictures(5);
  configure([](DisplaySettings& s) {
    s.crossDissolve_ = true;
    s.crossDissolveDuration_ = 1e30F;
    s.infoDelay_ = 2147483647;
    s.durationPerImage_ = -5;
  });
  start();
  run(Seconds{1});
  EXPECT_FALSE(view->filename().empty());
}

// --- Motion ---

struct ViewMotionTest : ViewTest {
  ViewMotionTest() {
    configure([](DisplaySettings& s) { s.kenBurnsIsOn_ = true; });
    listPictures(3);
  }
  [[nodiscard]] Seconds localTime() const { return view->currentLayer()->convertTime(now()); }
};

TEST_F(ViewMotionTest, freezesAndThawsWhereItStood) {
  start();
  beat();
  run(Seconds{3});
  press(U'z');
  beat();
  EXPECT_EQ(view->currentLayer()->properties().speed, 0);
  const Seconds frozen = localTime();
  run(Seconds{4});
  EXPECT_EQ(localTime(), frozen);
  press(U'z');
  EXPECT_NEAR(localTime().count(), frozen.count(), 1e-9);
  run(Seconds{1});
  EXPECT_NEAR(localTime().count(), frozen.count() + 1, 1e-6);
}

TEST_F(ViewMotionTest, letsARunningCrossDissolveFinishFirst) {
  configure([](DisplaySettings& s) { s.crossDissolve_ = true; });
  start();
  beat();
  const double fade = view->actualFadingDuration().count();
  press(U'z');
  run(Seconds{fade});
  EXPECT_EQ(view->currentLayer()->properties().speed, 1);
  run(Seconds{0.14});
  EXPECT_EQ(view->currentLayer()->properties().speed, 0);
}

TEST_F(ViewMotionTest, aMotionThatRunsIsNotThrownBackByResuming) {
  start();
  beat();
  run(Seconds{3});
  const Seconds before = localTime();
  view->resumeAnimation();
  EXPECT_EQ(localTime(), before);
}

TEST_F(ViewMotionTest, theOldPictureThawsWhenANewOneComes) {
  configure([](DisplaySettings& s) { s.crossDissolve_ = true; });
  start();
  beat();
  press(U'z');
  run(Seconds{9});
  const Layer* first = view->currentLayer();
  EXPECT_EQ(first->properties().speed, 0);
  runUntilChange();
  EXPECT_EQ(view->formerLayer(), first);
  EXPECT_EQ(first->properties().speed, 1);
}

// --- When it wants the next frame ---

struct ViewFrameWishesTest : ViewTest {
  ViewFrameWishesTest() { listPictures(20); }
  void showFirst() {
    start();
    beat();
    run(Seconds{5});
    ASSERT_FALSE(view->filename().empty());
  }
  [[nodiscard]] std::optional<Seconds> wanted() const {
    const std::optional<MediaTime> time = view->nextFrameWanted();
    if (!time) return std::nullopt;
    return Seconds{std::max(*time - clock.now(), Nanoseconds{0})};
  }
};

TEST_F(ViewFrameWishesTest, theNextPictureIsWantedWhenThePeriodIsOver) {
  showFirst();
  ASSERT_TRUE(wanted());
  EXPECT_NEAR(wanted()->count(), 5, 0.2);
  press(kRightArrowCharacter);
  EXPECT_EQ(wanted(), Seconds{0});
}

TEST_F(ViewFrameWishesTest, nothingIsWantedOfAShowThatStands) {
  showFirst();
  press(U' ');
  EXPECT_FALSE(wanted());
  press(U' ');
  EXPECT_TRUE(wanted());
  press(U'b');
  EXPECT_FALSE(wanted());
  press(U'b');
  EXPECT_TRUE(wanted());
  view->stopAnimation();
  EXPECT_FALSE(wanted());
  view->startAnimation();
  view->setQueryIsInProgress(true);
  EXPECT_FALSE(wanted());
}

TEST_F(ViewFrameWishesTest, aKeyOfAnotherDisplayIsWantedAtOnceWhateverTheShowDoes) {
  showFirst();
  press(U'b');
  tables.pendingKeyEventsByDisplay[view->displayNumber()] = {U'b', kNoModifiers, false};
  EXPECT_EQ(wanted(), Seconds{0});
  beat();
  ASSERT_TRUE(wanted());
  EXPECT_GT(*wanted(), Seconds{0});
}

TEST_F(ViewFrameWishesTest, motionIsFrozenAtOnceAndThenNothingIsWanted) {
  configure([](DisplaySettings& s) { s.kenBurnsIsOn_ = true; });
  showFirst();
  press(U' ');
  press(U'z');
  EXPECT_EQ(wanted(), Seconds{0});
  beat();
  EXPECT_EQ(view->currentLayer()->properties().speed, 0);
  EXPECT_FALSE(wanted());
}

TEST_F(ViewFrameWishesTest, motionIsFrozenAfterTheDissolve) {
  configure([](DisplaySettings& s) {
    s.kenBurnsIsOn_ = true;
    s.crossDissolve_ = true;
  });
  showFirst();
  runUntilChange();
  press(U'z');
  ASSERT_TRUE(wanted());
  EXPECT_NEAR(wanted()->count(), view->actualFadingDuration().count() + 0.1, 0.05);
  run(*wanted() + Seconds{0.05});
  EXPECT_EQ(view->currentLayer()->properties().speed, 0);
  ASSERT_TRUE(wanted());
  EXPECT_GT(*wanted(), Seconds{1}) << "only the next picture";
}

}  // namespace
}  // namespace lumivane

#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

struct ViewPrefetchTest : ViewTest {
  ViewPrefetchTest() {
    configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
  }
  void breakPictures(std::initializer_list<std::size_t> numbers) {
    for (const std::size_t i : numbers) decoder.pictures.erase(path(i));
  }
};

TEST_F(ViewPrefetchTest, decodesTheNextPictureTwoSecondsAfterAChange) {
  listPictures(5);
  start();
  beat();
  ASSERT_EQ(view->filename(), path(1));
  run(Seconds{1.98});
  EXPECT_EQ(decoder.decodes.count(path(2)), 0U);
  run(Seconds{0.06});
  EXPECT_EQ(decoder.decodes[path(2)], 1);
  EXPECT_TRUE(view->prefetchSlot().full());
  runUntilChange();
  EXPECT_EQ(view->filename(), path(2));
  EXPECT_EQ(decoder.decodes[path(2)], 1) << "one decode per picture shown";
  EXPECT_EQ(log.countStartingWith("Loading image in main thread"), 1U) << "only the first one";
}

TEST_F(ViewPrefetchTest, parksThePictureOnAHiddenLayer) {
  listPictures(5);
  start();
  beat();
  run(Seconds{2.1});
  ASSERT_NE(view->prefetchLayer(), nullptr);
  EXPECT_EQ(view->prefetchLayer()->properties().zPosition, -10);
  EXPECT_EQ(view->prefetchLayer()->properties().opacity, 0);
  EXPECT_EQ(view->prefetchLayer()->properties().contents, view->prefetchSlot().prefetched_image_);
  const BitmapRef first = view->prefetchLayer()->properties().contents;
  runUntilChange();
  run(Seconds{2.1});
  EXPECT_NE(view->prefetchLayer()->properties().contents, first);
  EXPECT_EQ(view->mainLayer().sublayers().size(), 4U) << "current, prefetched, text, help";
}

TEST_F(ViewPrefetchTest, skipsUpToFourMissingPictures) {
  listPictures(10);
  breakPictures({2, 3, 4, 5});
  start();
  beat();
  run(Seconds{2.1});
  ASSERT_TRUE(view->prefetchSlot().full());
  EXPECT_EQ(view->prefetchSlot().prefetch_img_index_, 6U);
  EXPECT_FALSE(view->prefetchSlot().prefetchNextImageFailed_);
}

TEST_F(ViewPrefetchTest, skippedPicturesAreNotTriedAgainInThisPass) {
  configure([](DisplaySettings& s) { s.dontRandomize_ = false; });
  listPictures(6);
  start();
  beat();
  const std::string good = view->filename();
  for (std::size_t i = 0; i < 6; ++i) {
    if (path(i) != good) breakPictures({i});
  }
  run(Seconds{2.1});
  EXPECT_TRUE(view->prefetchSlot().prefetchNextImageFailed_);
  EXPECT_EQ(log.countStartingWith("Image gone: /pictures"), 2U * 5U);
}

TEST_F(ViewPrefetchTest, givesUpAfterFiveAndSaysSo) {
  listPictures(10);
  breakPictures({2, 3, 4, 5, 6});
  start();
  beat();
  run(Seconds{2.1});
  EXPECT_FALSE(view->prefetchSlot().full());
  ASSERT_TRUE(view->prefetchSlot().prefetchNextImageFailed_);
  runUntilMessage("Several images in a row are gone!");
  EXPECT_FALSE(view->prefetchSlot().prefetchNextImageFailed_);
  runUntilMessage("Loading image in main thread: " + path(2));
}

TEST_F(ViewPrefetchTest, aChangeThatComesTooEarlyWaitsAPeriod) {
  listPictures(10);
  start();
  beat();
  queues.jobTime = std::chrono::seconds(30);
  run(Seconds{10.02});
  EXPECT_EQ(view->filename(), path(1));
  EXPECT_TRUE(log.has("Background thread still loading: " + path(2), LogLevel::Information));
  run(Seconds{30.2});
  EXPECT_EQ(view->filename(), path(2));
}

TEST_F(ViewPrefetchTest, picturesThatAreTooSmallAreSkipped) {
  configure([](DisplaySettings& s) { s.excludeSize_ = 500; });
  listPictures(4);
  decoder.pictures[path(2)] = pictureOf(499, 4000);
  decoder.pictures[path(3)] = pictureOf(500, 500);
  start();
  beat();
  run(Seconds{2.1});
  EXPECT_TRUE(log.has("Image smaller than 500 pixels: " + path(2), LogLevel::Error));
  EXPECT_EQ(view->prefetchSlot().prefetch_img_index_, 3U);
}

TEST_F(ViewPrefetchTest, steppingQuicklyLosesNoPictureOfThePass) {
  configure([](DisplaySettings& s) { s.dontRandomize_ = false; });
  listPictures(8);
  start();
  std::set<std::string> shown;
  beat();
  shown.insert(view->filename());
  for (int i = 0; i < 3; ++i) {
    press(kRightArrowCharacter);
    run(Seconds{0.5});
    shown.insert(view->filename());
  }
  while (shown.size() < 8) {
    runUntilChange();
    ASSERT_TRUE(shown.insert(view->filename()).second) << view->filename() << " came twice";
  }
}

// Its time may come between a key and the frame that obeys it.
TEST_F(ViewPrefetchTest, waitsForAStepThatTheNextFrameTakes) {
  listPictures(6);
  start();
  beat();
  for (int i = 0; i < 2; ++i) {
    press(kRightArrowCharacter);
    beat();
  }
  ASSERT_EQ(view->filename(), path(3));
  press(kLeftArrowCharacter);
  beat();
  press(kRightArrowCharacter);
  loop.runFor(std::chrono::seconds(2));
  beat();
  ASSERT_EQ(view->filename(), path(3)) << "from the history";
  run(Seconds{2.1});
  press(kRightArrowCharacter);
  beat();
  EXPECT_EQ(view->filename(), path(4)) << "not the same once more";

  press(kLeftArrowCharacter);
  loop.runFor(std::chrono::seconds(2));
  beat();
  EXPECT_EQ(view->filename(), path(3)) << "the step is not forgotten";
}

TEST_F(ViewPrefetchTest, anAnswerForAnotherListIsDropped) {
  listPictures(5);
  start();
  beat();
  queues.jobTime = std::chrono::seconds(3);
  run(Seconds{2.5});
  ASSERT_TRUE(view->prefetchSlot().prefetchNextImageRunning_);
  storeList({"/other/a.jpg"});
  view->viewWillMoveToWindow(&window);
  loop.runFor(std::chrono::seconds(5));
  EXPECT_FALSE(view->prefetchSlot().full());
}

// Once a list that was read anew left the show waiting for ever for a prefetch of the old one.
TEST_F(ViewPrefetchTest, doesNotWaitForAPrefetchOfAnotherList) {
  listPictures(5);
  start();
  beat();
  queues.jobTime = std::chrono::seconds(3);
  run(Seconds{2.5});
  ASSERT_TRUE(view->prefetchSlot().prefetchNextImageRunning_);
  view->loadImageList(view->displayName());
  EXPECT_FALSE(view->prefetchSlot().prefetchNextImageRunning_);
  const std::string shown = view->filename();
  run(Seconds{14});
  EXPECT_NE(view->filename(), shown);
}

// --- A picture that is due and not there yet ---

TEST_F(ViewPrefetchTest, aDuePictureIsShownAsSoonAsItComes) {
  listPictures(5);
  queues.jobTime = std::chrono::seconds(25);
  start();
  run(Seconds{24.9});
  EXPECT_TRUE(view->filename().empty());
  EXPECT_EQ(log.countStartingWith("Loading image in main thread"), 1U) << "asked for once";
  EXPECT_EQ(log.count("Background thread still loading: " + path(1)), 2U) << "a period apart";
  run(Seconds{0.2});
  EXPECT_EQ(view->filename(), path(1));
  queues.jobTime = Nanoseconds{0};
  run(Seconds{9.7});
  EXPECT_EQ(view->filename(), path(1)) << "and stays for its time";
}

TEST_F(ViewPrefetchTest, aLateDuePictureDoesNotTakeThePlaceOfOneThatWasSteppedTo) {
  listPictures(5);
  start();
  beat();
  runUntilChange();
  ASSERT_EQ(view->filename(), path(2));
  queues.jobTime = std::chrono::seconds(3);
  press(kRightArrowCharacter);
  run(Seconds{0.1});
  ASSERT_TRUE(view->prefetchSlot().prefetchNextImageRunning_);
  press(kLeftArrowCharacter);
  run(Seconds{0.1});
  ASSERT_EQ(view->filename(), path(1));
  run(Seconds{5});
  EXPECT_EQ(view->filename(), path(1));
  EXPECT_TRUE(view->prefetchSlot().full()) << "it waits in the slot";
}

TEST_F(ViewPrefetchTest, aMissingDuePictureSaysNothingOverOneThatWasSteppedTo) {
  listPictures(5);
  start();
  beat();
  runUntilChange();
  breakPictures({3});
  queues.jobTime = std::chrono::seconds(1);
  press(kRightArrowCharacter);
  run(Seconds{0.1});
  press(kLeftArrowCharacter);
  run(Seconds{0.1});
  const ImageIndex shown = view->imageIndex();
  run(Seconds{2});
  EXPECT_EQ(view->imageIndex(), shown);
}

// A due picture that waits in the slot was once dropped by the prefetch, and did not come again in that pass.
TEST_F(ViewPrefetchTest, aDuePictureInTheSlotIsNotFetchedAnew) {
  configure([](DisplaySettings& s) { s.durationPerImage_ = 4; });
  listPictures(5);
  start();
  beat();
  press(kRightArrowCharacter);
  view->animateOneFrame();
  loop.runPending();
  ASSERT_TRUE(view->prefetchSlot().full());
  const BitmapRef waiting = view->prefetchSlot().prefetched_image_;
  press(U' ');  // and the show is paused before it is shown
  run(Seconds{3.9});
  EXPECT_EQ(view->prefetchSlot().prefetched_image_, waiting);
  EXPECT_EQ(decoder.decodes[path(2)], 1);
  press(U' ');
  run(Seconds{0.2});
  EXPECT_EQ(view->filename(), path(2));
}

TEST_F(ViewPrefetchTest, aResizeBeforeTheFirstPictureCostsNoPeriod) {
  listPictures(5);
  start();
  view->animateOneFrame();
  loop.runPending();
  ASSERT_TRUE(view->prefetchSlot().full());
  view->viewDidEndLiveResize();
  run(Seconds{0.06});
  EXPECT_EQ(view->filename(), path(1));
}

TEST_F(ViewPrefetchTest, anotherDisplayShowsItsFirstPictureAtOnce) {
  displays.all.push_back({2, "Projector", {}, 1});
  configure([](DisplaySettings& s) { s.durationPerImage_ = 30; }, "Projector");
  listPictures(5);
  storeList({path(3), path(4)}, "Projector");
  storeList({path(0), path(1), path(2)});
  start();
  beat();
  run(Seconds{1});
  window.display = 2;
  view->viewWillMoveToWindow(&window);
  view->viewDidEndLiveResize();  // as the host does when a window has moved
  run(Seconds{0.2});
  EXPECT_TRUE(view->filename() == path(3) || view->filename() == path(4)) << view->filename();
}

TEST_F(ViewPrefetchTest, aViewThatIsGoneHearsNothingMore) {
  listPictures(5);
  start();
  beat();
  queues.jobTime = std::chrono::seconds(3);
  run(Seconds{2.5});
  view.reset();
  loop.runFor(std::chrono::seconds(60));
}

}  // namespace
}  // namespace lumivane

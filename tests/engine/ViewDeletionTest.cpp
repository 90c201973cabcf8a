#include <algorithm>

#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

struct ViewDeletionTest : ViewTest {
  ViewDeletionTest() {
    configure([](DisplaySettings& s) {
      s.dontRandomize_ = true;
      s.enableDeleteAtRuntime_ = true;
    });
    listPictures(10);
    for (std::size_t i = 0; i < 10; ++i) files.content[path(i)] = "picture";
    displays.all = {{1, "Color LCD", {1920, 1080}, 1}, {2, "Other", {1920, 1080}, 1}};
  }
  // The queue moves the file, and tells.
  void press(char32_t character) {
    ViewTest::press(character);
    loop.runPending();
  }
  void show(const std::string& wanted) {
    start();
    beat();
    while (view->filename() != wanted) runUntilChange();
  }
  [[nodiscard]] ImageList storedList() {
    RecordingLog quiet;
    return loadImageList(files, folders.data + "/" + imageListFileName("Color LCD"), quiet);
  }
};

TEST_F(ViewDeletionTest, movesTheShownPictureToTheTrashAndShowsAnother) {
  show(path(3));
  ASSERT_EQ(view->imageIndex(), 3U);
  press(kDeleteCharacter);
  EXPECT_EQ(trash.trashed, std::vector{path(3)});
  EXPECT_EQ(view->imageFiles().size(), 9U);
  EXPECT_EQ(std::count(view->imageFiles().begin(), view->imageFiles().end(), path(3)), 0);
  EXPECT_EQ(storedList(), view->imageFiles());
  EXPECT_TRUE(log.has("Deleting image " + path(3), LogLevel::Information));
  EXPECT_EQ(sounds.played, std::vector{Sound::DragToTrash});
  EXPECT_TRUE(tables.pendingKeyEventsByDisplay.contains(2));
  const Layer* before = view->currentLayer();
  beat();
  EXPECT_NE(view->currentLayer(), before);
  EXPECT_NE(view->filename(), path(3));
}

TEST_F(ViewDeletionTest, aDeletedNumberIsNotToBeShownAnyMore) {
  show(path(3));
  press(kDeleteCharacter);
  EXPECT_EQ(view->imagesNotYetShown(), (IndexList{0, 1, 2, 4, 5, 6, 7, 8, 9}));
}

TEST_F(ViewDeletionTest, whatTheSlotHeldIsDropped) {
  show(path(2));
  run(Seconds{3});
  ASSERT_TRUE(view->prefetchSlot().full());
  press(kDeleteCharacter);
  EXPECT_FALSE(view->prefetchSlot().full());
}

TEST_F(ViewDeletionTest, whatTheQueueStillBringsIsNotShownUnderAnotherPicturesName) {
  show(path(2));
  run(Seconds{1.99});
  loop.runFor(std::chrono::milliseconds(20));  // the prefetch has begun
  ASSERT_TRUE(view->prefetchSlot().prefetchNextImageRunning_ || view->prefetchSlot().full());
  press(kDeleteCharacter);
  EXPECT_FALSE(view->prefetchSlot().prefetchNextImageRunning_);
  for (int i = 0; i < 5; ++i) {
    runUntilChange();
    EXPECT_EQ(view->filename(), view->imageFiles()[view->imageIndex()]);
    EXPECT_EQ(decoder.decodes[view->filename()], 1);
  }
}

TEST_F(ViewDeletionTest, aDisabledKeyBeepsAndSaysSo) {
  configure([](DisplaySettings& s) { s.enableDeleteAtRuntime_ = false; });
  show(path(3));
  press(kDeleteCharacter);
  EXPECT_EQ(view->firstLine(), "Delete key has been disabled in Preferences");
  EXPECT_TRUE(view->firstLineIsError());
  EXPECT_EQ(sounds.played, std::vector{Sound::Funk});
  EXPECT_TRUE(trash.trashed.empty());
  EXPECT_EQ(view->imageFiles().size(), 10U);
  EXPECT_TRUE(tables.pendingKeyEventsByDisplay.empty());
}

TEST_F(ViewDeletionTest, aFileWithoutATrashStays) {
  trash.failure = "Trashing on system internal mounts is not supported";
  show(path(3));
  press(kDeleteCharacter);
  EXPECT_EQ(view->imageFiles().size(), 10U);
  EXPECT_EQ(view->filename(), path(3));
  EXPECT_EQ(sounds.played, std::vector{Sound::Funk});
  EXPECT_TRUE(log.has(
      "Failed to delete " + path(3) + "!\n Error: Trashing on system internal mounts is not supported",
      LogLevel::Error));
  EXPECT_TRUE(log.has("  No error found!", LogLevel::Error));
  EXPECT_TRUE(tables.pendingKeyEventsByDisplay.contains(2));
}

TEST_F(ViewDeletionTest, aFileThatIsGoneAlreadyStaysInTheList) {
  show(path(3));
  files.content.erase(path(3));
  press(kDeleteCharacter);
  EXPECT_TRUE(log.has("Image at path " + path(3) + " does not exist!", LogLevel::Error));
  EXPECT_EQ(view->imageFiles().size(), 10U);
  EXPECT_EQ(sounds.played, std::vector{Sound::Funk});
}

TEST_F(ViewDeletionTest, anUnusablePathIsRefused) {
  files.content["relative.jpg"] = "picture";
  decoder.pictures["relative.jpg"] = pictureOf(400, 300);
  storeList({"relative.jpg"});
  start();
  beat();
  press(kDeleteCharacter);
  EXPECT_TRUE(log.has("fileURLWithPath failed for: relative.jpg!", LogLevel::Error));
  EXPECT_TRUE(trash.trashed.empty());
}

TEST_F(ViewDeletionTest, aMissingSoundIsLogged) {
  sounds.silent = true;
  show(path(3));
  press(kDeleteCharacter);
  EXPECT_TRUE(log.has("Could not find system sound file for trash operation!", LogLevel::Error));
  EXPECT_EQ(view->imageFiles().size(), 9U);
}

// Positions in the history are those of the longer list.
TEST_F(ViewDeletionTest, dontDeleteAPictureThatIsNotOnTheScreen) {
  show(path(4));
  press(kLeftArrowCharacter);
  beat();
  ASSERT_EQ(view->filename(), path(3));
  press(kDeleteCharacter);
  beat();
  press(kLeftArrowCharacter);
  beat();  // the picture p4 was stored at position 4, where p5 is now
  ASSERT_EQ(view->filename(), path(5));
  press(kDeleteCharacter);
  EXPECT_EQ(trash.trashed, std::vector{path(3)});
  EXPECT_EQ(view->firstLine(), "Can't delete " + path(4));
}

// --- A disk that takes its time ---

struct SlowDeletionTest : ViewDeletionTest {
  void showThenDelete(const std::string& wanted, Nanoseconds diskTime) {
    show(wanted);
    run(Seconds{5});  // the next picture waits in the slot
    queues.jobTime = diskTime;
    ViewTest::press(kDeleteCharacter);
  }
};

TEST_F(SlowDeletionTest, theShowGoesOnMeanwhileAndNoOtherPictureGoes) {
  showThenDelete(path(3), std::chrono::seconds(30));
  run(Seconds{6});
  ASSERT_EQ(view->filename(), path(4)) << "changed in time";
  EXPECT_EQ(view->imageFiles().size(), 10U);
  queues.jobTime = Nanoseconds{0};
  const std::string shown = view->filename();
  while (trash.trashed.empty()) run(Seconds{0.02});
  run(Seconds{0.02});
  EXPECT_EQ(trash.trashed, std::vector{path(3)});
  EXPECT_EQ(std::count(view->imageFiles().begin(), view->imageFiles().end(), path(3)), 0);
  EXPECT_EQ(view->imageFiles().size(), 9U);
  EXPECT_EQ(storedList(), view->imageFiles());
  EXPECT_EQ(view->imageFiles()[view->imageIndex()], view->filename()) << "was " << shown;
}

TEST_F(SlowDeletionTest, anImpatientUserDeletesOnce) {
  showThenDelete(path(3), std::chrono::seconds(2));
  for (int i = 0; i < 5; ++i) ViewTest::press(kDeleteCharacter);
  run(Seconds{2.1});
  EXPECT_EQ(trash.trashed, std::vector{path(3)});
  EXPECT_FALSE(log.has("Image at path " + path(3) + " does not exist!", LogLevel::Error));
}

TEST_F(SlowDeletionTest, aListThatIsReadAnewMeanwhileLosesThePictureToo) {
  showThenDelete(path(3), std::chrono::seconds(2));
  storeList({path(8), path(3), path(5)});
  view->loadImageList(view->displayName());
  run(Seconds{2.1});
  EXPECT_EQ(view->imageFiles(), (ImageList{path(8), path(5)}));
}

TEST_F(SlowDeletionTest, anotherListIsLeftAlone) {
  showThenDelete(path(3), std::chrono::seconds(2));
  storeList({path(8), path(5)});
  view->loadImageList(view->displayName());
  run(Seconds{2.1});
  EXPECT_EQ(view->imageFiles(), (ImageList{path(8), path(5)}));
}

TEST_F(SlowDeletionTest, aViewThatIsGoneHearsNothingMore) {
  showThenDelete(path(3), std::chrono::seconds(2));
  view.reset();
  loop.runFor(std::chrono::seconds(5));
}

TEST_F(ViewDeletionTest, deletingTheLastPictureEmptiesTheList) {
  storeList({path(0)});
  start();
  beat();
  press(kDeleteCharacter);
  EXPECT_TRUE(view->imageFiles().empty());
  beat();
  EXPECT_TRUE(view->firstLine().starts_with("No images. Please choose directory other than "));
  press(kDeleteCharacter);
  EXPECT_EQ(trash.trashed.size(), 1U);
}

}  // namespace
}  // namespace lumivane

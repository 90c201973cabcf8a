#include "engine/ImageHistory.h"

#include "tests/support/FakeDesktop.h"

namespace lumivane {
namespace {

struct ImageHistoryTest : testing::Test {
  FakeFreeMemory memory;
  RecordingLog log;
  ImageHistory history{memory, log};

  BitmapRef store(ImageIndex index) {
    BitmapRef image = makeBlankBitmap({1, 1});
    history.storeInHistoryImage(image, std::make_shared<PropertyDictionary>(), index);
    return image;
  }
  void shrinkTo(std::size_t size) {
    memory.megabytes = 100;
    for (ImageIndex i = 100; history.size() > size; ++i) store(i);
  }
};

TEST_F(ImageHistoryTest, keepsItsSizeWithEnoughMemory) {
  memory.megabytes = 2000;
  store(1);
  EXPECT_EQ(history.size(), 12U);
}

TEST_F(ImageHistoryTest, shrinksByOneWhenMemoryIsScarce) {
  for (ImageIndex i = 1; i <= 12; ++i) store(i);
  memory.megabytes = 1535;
  store(13);
  EXPECT_EQ(history.size(), 11U);
  EXPECT_TRUE(log.has("shrinking history, new size = 11", LogLevel::Information));
  EXPECT_EQ(history.entries()[0].index, 13U);
  EXPECT_EQ(history.entries()[10].index, 3U);
  EXPECT_FALSE(history.entries()[11].img);
}

TEST_F(ImageHistoryTest, growsByOneWhenMemoryIsAmple) {
  shrinkTo(11);
  memory.megabytes = 3072;
  store(1);
  EXPECT_EQ(history.size(), 11U);
  memory.megabytes = 3073;
  store(2);
  EXPECT_EQ(history.size(), 12U);
  EXPECT_TRUE(log.has("enlarging history, new size = 12", LogLevel::Information));
}

TEST_F(ImageHistoryTest, neverFallsBelowThree) {
  shrinkTo(3);
  store(1);
  EXPECT_EQ(history.size(), 3U);
}

TEST_F(ImageHistoryTest, countsAFailedQueryAsScarceMemory) {
  memory.fails = true;
  store(1);
  EXPECT_TRUE(log.has("host_statistics failed! (error = 5)", LogLevel::Error));
  EXPECT_EQ(history.freeMemoryMB(), 512);
  EXPECT_EQ(history.size(), 11U);
}

TEST_F(ImageHistoryTest, doesNotStoreTheSamePictureTwiceInARow) {
  store(7);
  store(7);
  EXPECT_EQ(history.entries()[0].index, 7U);
  EXPECT_FALSE(history.entries()[1].img);
}

TEST_F(ImageHistoryTest, keepsTheFirstPictureOfTheListToo) {
  store(0);
  EXPECT_TRUE(history.entries()[0].img);
}

TEST_F(ImageHistoryTest, releasesTheOldestPicture) {
  std::weak_ptr<const Bitmap> first = store(1);
  for (ImageIndex i = 2; i <= 12; ++i) store(i);
  EXPECT_FALSE(first.expired());
  store(13);
  EXPECT_TRUE(first.expired());
  EXPECT_EQ(history.entries()[11].index, 2U);
}

TEST_F(ImageHistoryTest, repairsTwoNeighboursWithTheSamePicture) {
  shrinkTo(3);
  memory.megabytes = 2000;
  const BitmapRef twice = makeBlankBitmap({1, 1});
  history.storeInHistoryImage(twice, nullptr, 1);
  history.storeInHistoryImage(twice, nullptr, 2);
  store(3);
  store(4);
  EXPECT_TRUE(log.has("history images stored in elem 2 and 1 are equal (indices = 1, 2)!", LogLevel::Error));
  EXPECT_FALSE(history.entries()[2].img);
  EXPECT_EQ(history.entries()[1].index, 3U);
}

TEST_F(ImageHistoryTest, stepsBackAndForward) {
  for (ImageIndex i = 1; i <= 5; ++i) store(i);
  EXPECT_TRUE(history.stepBack());
  EXPECT_EQ(history.loadFromHistoryImage().index, 4U);
  EXPECT_TRUE(history.stepBack());
  EXPECT_TRUE(history.stepBack());
  EXPECT_EQ(history.loadFromHistoryImage().index, 2U);
  EXPECT_TRUE(history.stepForward());
  EXPECT_EQ(history.loadFromHistoryImage().index, 3U);
  EXPECT_TRUE(history.stepForward());
  EXPECT_TRUE(history.stepForward());
  EXPECT_EQ(history.loadFromHistoryImage().index, 5U);
  EXPECT_FALSE(history.stepForward());
}

TEST_F(ImageHistoryTest, doesNotStepBackBeyondTheOldest) {
  store(1);
  EXPECT_FALSE(history.stepBack());
  EXPECT_EQ(history.stepsBack(), 0U);
  shrinkTo(3);
  EXPECT_TRUE(history.stepBack());
  EXPECT_TRUE(history.stepBack());
  EXPECT_TRUE(history.stepBack()) << "the oldest picture is shown again";
  EXPECT_EQ(history.stepsBack(), 2U);
}

TEST_F(ImageHistoryTest, aStoreReturnsToTheNewest) {
  store(1);
  store(2);
  EXPECT_TRUE(history.stepBack());
  store(3);
  EXPECT_EQ(history.stepsBack(), 0U);
}

TEST_F(ImageHistoryTest, clearsEverythingAtTheNextStoreWhenAsked) {
  std::weak_ptr<const Bitmap> old = store(1);
  shrinkTo(5);
  memory.megabytes = 2000;
  history.clearAtNextStore();
  EXPECT_TRUE(history.entries()[0].img) << "nothing is dropped before the next picture is there";
  store(1);
  EXPECT_TRUE(old.expired());
  EXPECT_EQ(history.size(), 12U);
  EXPECT_EQ(history.entries()[0].index, 1U);
  EXPECT_FALSE(history.entries()[1].img);
}

}  // namespace
}  // namespace lumivane

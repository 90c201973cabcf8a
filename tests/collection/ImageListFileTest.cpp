#include "collection/ImageListFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kPath[] = "/data/LumivaneImageList.LG.plist";

class ImageListFileTest : public testing::Test {
 protected:
  ImageList loaded(const std::string& content) {
    files_.content[kPath] = content;
    return loadImageList(files_, kPath, log_);
  }
  std::string saved(const ImageList& imagefiles) {
    saveImageList(files_, kPath, imagefiles, log_);
    return files_.content.at(kPath);
  }
  MemoryFiles files_;
  RecordingLog log_;
};

TEST_F(ImageListFileTest, EachDisplayHasItsFile) {
  EXPECT_EQ(imageListFileName("Color LCD"), "LumivaneImageList.Color LCD.plist");
  EXPECT_NE(imageListFileName("LG"), imageListFileName("LG_2"));
}

TEST_F(ImageListFileTest, LoadsALineForEachPicture) {
  EXPECT_THAT(loaded("/p/a.jpg\n/p/b c.jpg"), ElementsAre("/p/a.jpg", "/p/b c.jpg"));
  EXPECT_THAT(
      log_.entries(),
      ElementsAre(RecordingLog::Entry{"load images from: " + std::string(kPath), LogLevel::Information},
                  RecordingLog::Entry{"num images from config = 2", LogLevel::Information}));
}

TEST_F(ImageListFileTest, EmptyLinesFurtherDownAreEntries) {
  EXPECT_THAT(loaded("/p/a.jpg\n\n/p/b.jpg"), ElementsAre("/p/a.jpg", "", "/p/b.jpg"));
  EXPECT_THAT(loaded("/p/a.jpg\n"), ElementsAre("/p/a.jpg", ""));
}

TEST_F(ImageListFileTest, EmptyFirstLineMakesAnEmptyList) {
  EXPECT_THAT(loaded("\n/p/a.jpg"), IsEmpty());
  EXPECT_THAT(loaded(""), IsEmpty());
  EXPECT_EQ(log_.count("num images from config = 0"), 2U);
  EXPECT_EQ(log_.countStartingWith("load images failed"), 0U);
}

TEST_F(ImageListFileTest, MissingFileIsAnEmptyList) {
  EXPECT_THAT(loadImageList(files_, kPath, log_), IsEmpty());
  EXPECT_THAT(
      log_.entries(),
      ElementsAre(RecordingLog::Entry{"load images from: " + std::string(kPath), LogLevel::Information},
                  RecordingLog::Entry{"num images from config = 0", LogLevel::Information}));
}

TEST_F(ImageListFileTest, UnreadableFileIsAnEmptyListAndTold) {
  files_.unreadable.insert(kPath);
  EXPECT_THAT(loadImageList(files_, kPath, log_), IsEmpty());
  EXPECT_TRUE(
      log_.has("load images failed: " + std::string(kPath) + ": Permission denied!", LogLevel::Error));
}

TEST_F(ImageListFileTest, TextThatIsNotUtf8IsAnEmptyListAndTold) {
  EXPECT_THAT(loaded("/p/a.jpg\n/p/\xE9t\xE9.jpg"), IsEmpty());
  EXPECT_EQ(log_.countStartingWith("load images failed: "), 1U);
  EXPECT_EQ(log_.count("num images from config = 0"), 1U);
}

TEST_F(ImageListFileTest, SavesWithoutALineFeedAtTheEnd) {
  EXPECT_EQ(saved({"/p/a.jpg", "/p/b c.jpg"}), "/p/a.jpg\n/p/b c.jpg");
  EXPECT_THAT(log_.entries(),
              ElementsAre(RecordingLog::Entry{"saving image list (path = " + std::string(kPath) + ")",
                                              LogLevel::Information}));
}

TEST_F(ImageListFileTest, EmptyListIsAnEmptyFile) {
  EXPECT_EQ(saved({}), "");
  EXPECT_THAT(loadImageList(files_, kPath, log_), IsEmpty());
}

TEST_F(ImageListFileTest, WhatWasSavedIsLoaded) {
  const ImageList paths = {"/p/caf\xC3\xA9.jpg", "/p/\xF0\x9F\x8F\x94.jpg", "/p/tab\t.jpg", "/p/\r.jpg", ""};
  saved(paths);
  EXPECT_EQ(loadImageList(files_, kPath, log_), paths);
}

TEST_F(ImageListFileTest, PathsThatWouldRuinTheListAreLeftOut) {
  EXPECT_EQ(saved({"/p/line\nbreak.jpg", "/p/a.jpg", "/p/\xE9.jpg", "/p/b.jpg"}), "/p/a.jpg\n/p/b.jpg");
  EXPECT_TRUE(
      log_.has("File name cannot be kept in the image list: /p/line\\x0Abreak.jpg !", LogLevel::Error));
  EXPECT_TRUE(log_.has("File name cannot be kept in the image list: /p/\\xE9.jpg !", LogLevel::Error));
}

TEST_F(ImageListFileTest, FailedWriteIsToldAndLeavesTheOldFile) {
  saved({"/p/old.jpg"});
  files_.unwritable.insert(kPath);
  saveImageList(files_, kPath, {"/p/new.jpg"}, log_);
  EXPECT_EQ(files_.content.at(kPath), "/p/old.jpg");
  EXPECT_TRUE(log_.has("saving image list failed: " + std::string(kPath) + ": No space left on device!",
                       LogLevel::Error));
}

TEST_F(ImageListFileTest, WithoutAPathTheFailureIsTold) {
  saveImageList(files_, "", {"/p/a.jpg"}, log_);
  const auto entries = log_.entries();
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(entries[0], (RecordingLog::Entry{"imageListPath_ or imagefiles_ = nil!", LogLevel::Error}));
  EXPECT_EQ(entries[1], (RecordingLog::Entry{"saving image list (path = )", LogLevel::Information}));
  EXPECT_THAT(entries[2].text, testing::StartsWith("saving image list failed: "));
  EXPECT_THAT(files_.content, IsEmpty());
}

}  // namespace
}  // namespace lumivane

#include "collection/index/PictureSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/FakeFileIndex.h"
#include "tests/support/FakePictureDimensions.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr FileStamp kStamp{1000, 7};

class PictureSearchTest : public testing::Test {
 protected:
  PictureSearchTest() {
    own_.tellsOfAllFiles = true;
    desktop_.refusal = "there is no index of the desktop";
    dimensions_.other = SizePx{500, 500};
  }

  std::vector<std::string> search(const PicturePredicate& predicate = {"/p", 0, 0}) {
    std::vector<std::string> paths;
    leftOut_.clear();
    dimensions_.forgetMeasured();
    searchPictures(
        sources_, predicate, [&](std::string path) { paths.push_back(std::move(path)); }, stop_.get_token());
    return paths;
  }

  FakeFileIndex desktop_;
  FakeFileIndex own_;
  FakePictureDimensions dimensions_;
  MemoryFiles files_;
  RecordingLog log_;
  std::map<std::string, LeftOut> leftOut_;
  std::stop_source stop_;
  PictureSources sources_{{&desktop_, &own_},
                          dimensions_,
                          files_,
                          "/cache",
                          log_,
                          [this](const std::string& path, LeftOut rule) { leftOut_[path] = rule; }};
};

TEST_F(PictureSearchTest, TheFirstIndexThatAnswersIsUsedAndNamed) {
  desktop_.refusal.clear();
  desktop_.files = {{"/p/a.jpg", kStamp, SizePx{500, 500}}};
  own_.files = {{"/p/b.jpg", kStamp, std::nullopt}};
  EXPECT_THAT(search(), UnorderedElementsAre("/p/a.jpg"));
  EXPECT_THAT(own_.opened, IsEmpty());
  EXPECT_TRUE(log_.has("Pictures are searched by a made index: /p", LogLevel::Information));
}

TEST_F(PictureSearchTest, ARefusalIsLoggedWithItsReason) {
  own_.files = {{"/p/b.jpg", kStamp, std::nullopt}};
  EXPECT_THAT(search(), UnorderedElementsAre("/p/b.jpg"));
  EXPECT_TRUE(log_.has("there is no index of the desktop", LogLevel::Information));
  EXPECT_THAT(desktop_.opened, testing::ElementsAre("/p"));
}

TEST_F(PictureSearchTest, AllLimitsAreStrict) {
  own_.files = {{"/p/exact-bytes.jpg", {2048, 1}, SizePx{900, 900}},
                {"/p/more-bytes.jpg", {2049, 1}, SizePx{900, 900}},
                {"/p/exact-width.jpg", {9000, 1}, SizePx{200, 1000}},
                {"/p/exact-height.jpg", {9000, 1}, SizePx{1000, 200}},
                {"/p/just.jpg", {9000, 1}, SizePx{201, 201}}};
  EXPECT_THAT(search({"/p", 2048, 200}), UnorderedElementsAre("/p/more-bytes.jpg", "/p/just.jpg"));
  EXPECT_THAT(leftOut_, UnorderedElementsAre(Pair("/p/exact-bytes.jpg", LeftOut::FileSize),
                                             Pair("/p/exact-width.jpg", LeftOut::PixelSize),
                                             Pair("/p/exact-height.jpg", LeftOut::PixelSize)));
}

TEST_F(PictureSearchTest, TheSameLimitsHoldForMeasuredPictures) {
  dimensions_.sizes = {{"/p/a.jpg", {200, 1000}}, {"/p/b.jpg", {1000, 200}}, {"/p/c.jpg", {201, 201}}};
  for (const auto& [path, size] : dimensions_.sizes) own_.files.push_back({path, kStamp, std::nullopt});
  EXPECT_THAT(search({"/p", 0, 200}), UnorderedElementsAre("/p/c.jpg"));
  EXPECT_EQ(leftOut_.at("/p/a.jpg"), LeftOut::PixelSize);
  EXPECT_EQ(leftOut_.at("/p/b.jpg"), LeftOut::PixelSize);
}

TEST_F(PictureSearchTest, WithNoMinimumEveryPictureOfAByteIsTaken) {
  own_.files = {{"/p/empty.jpg", {0, 1}, SizePx{1, 1}}, {"/p/byte.jpg", {1, 1}, SizePx{1, 1}}};
  EXPECT_THAT(search({"/p", 0, 0}), UnorderedElementsAre("/p/byte.jpg"));
}

TEST_F(PictureSearchTest, LimitsBeyondEveryPictureFindNothing) {
  own_.files = {{"/p/a.jpg", kStamp, SizePx{2147483647, 2147483647}}};
  EXPECT_THAT(search({"/p", 0, 4294967295U}), IsEmpty());
}

TEST_F(PictureSearchTest, WhatIsNoPictureIsLeftOut) {
  dimensions_.sizes = {{"/p/text.jpg", kNoPicture}};
  dimensions_.other = std::nullopt;
  desktop_.refusal.clear();
  desktop_.files = {{"/p/text.jpg", kStamp, std::nullopt},
                    {"/p/locked.jpg", kStamp, std::nullopt},
                    {"/p/drawing.svg", kStamp, SizePx{900, 900}},
                    {"/p/negative.jpg", kStamp, SizePx{-900, 900}}};
  EXPECT_THAT(search(), IsEmpty());
  EXPECT_THAT(leftOut_, UnorderedElementsAre(Pair("/p/text.jpg", LeftOut::NoPicture),
                                             Pair("/p/locked.jpg", LeftOut::Unreadable),
                                             Pair("/p/drawing.svg", LeftOut::Type),
                                             Pair("/p/negative.jpg", LeftOut::PixelSize)));
  EXPECT_TRUE(log_.has("Pictures that could not be opened = 1 !", LogLevel::Error));
}

TEST_F(PictureSearchTest, AnUnchangedTreeIsNotOpenedASecondTime) {
  dimensions_.sizes = {{"/p/text.jpg", kNoPicture}};
  own_.files = {{"/p/a.jpg", kStamp, std::nullopt}, {"/p/text.jpg", kStamp, std::nullopt}};
  const auto first = search();
  EXPECT_EQ(dimensions_.measured().size(), 2U);
  EXPECT_EQ(search(), first);
  EXPECT_THAT(dimensions_.measured(), IsEmpty());
  EXPECT_EQ(files_.writes, 1);
}

TEST_F(PictureSearchTest, AChangedFileIsMeasuredAgain) {
  own_.files = {{"/p/a.jpg", kStamp, std::nullopt}, {"/p/b.jpg", kStamp, std::nullopt}};
  (void)search();
  own_.files[0].stamp.modified += 1;
  dimensions_.other = SizePx{10, 10};
  EXPECT_THAT(search({"/p", 0, 100}), UnorderedElementsAre("/p/b.jpg"));
  EXPECT_THAT(dimensions_.measured(), UnorderedElementsAre("/p/a.jpg"));
}

TEST_F(PictureSearchTest, WhatCouldNotBeOpenedIsTriedAgain) {
  dimensions_.other = std::nullopt;
  own_.files = {{"/p/a.jpg", kStamp, std::nullopt}};
  EXPECT_THAT(search(), IsEmpty());
  dimensions_.other = SizePx{500, 500};
  EXPECT_THAT(search(), UnorderedElementsAre("/p/a.jpg"));
}

TEST_F(PictureSearchTest, VanishedFilesAreForgottenOnlyByAnIndexThatTellsOfAll) {
  own_.files = {{"/p/a.jpg", kStamp, std::nullopt}, {"/p/small.jpg", {1, 1}, std::nullopt}};
  (void)search();
  // A larger minimum: the small one is still there and stays known.
  (void)search({"/p", 100, 0});
  EXPECT_THAT(search(), UnorderedElementsAre("/p/a.jpg", "/p/small.jpg"));
  EXPECT_THAT(dimensions_.measured(), IsEmpty());
  const auto before = files_.content["/cache"];
  desktop_.refusal.clear();
  desktop_.files = {{"/p/a.jpg", kStamp, std::nullopt}};
  (void)search();
  EXPECT_EQ(files_.content["/cache"], before);
  desktop_.refusal = "none";
  own_.files.pop_back();
  (void)search();
  EXPECT_LT(files_.content["/cache"].size(), before.size());
}

TEST_F(PictureSearchTest, AnIndexThatKnowsAllSizesOpensNeitherFilesNorCache) {
  desktop_.refusal.clear();
  desktop_.files = {{"/p/a.jpg", kStamp, SizePx{500, 500}}};
  files_.content["/cache"] = "damaged";
  EXPECT_THAT(search(), UnorderedElementsAre("/p/a.jpg"));
  EXPECT_THAT(dimensions_.measured(), IsEmpty());
  EXPECT_EQ(log_.countStartingWith("The cache"), 0U);
}

TEST_F(PictureSearchTest, OneThatBreaksOffEndsWithWhatItHasAndSaysSo) {
  desktop_.refusal.clear();
  desktop_.files = {{"/p/a.jpg", kStamp, SizePx{500, 500}}, {"/p/b.webp", kStamp, std::nullopt}};
  desktop_.failure = "the index has gone";
  EXPECT_THAT(search(), UnorderedElementsAre("/p/a.jpg", "/p/b.webp"));
  EXPECT_TRUE(
      log_.has("The search broke off: the index has gone; pictures found until then = 2 !", LogLevel::Error));
  EXPECT_THAT(own_.opened, IsEmpty());
}

TEST_F(PictureSearchTest, OneThatIsGivenUpForgetsNothingAndKeepsWhatItMeasured) {
  own_.files = {{"/p/a.jpg", kStamp, std::nullopt}, {"/p/b.jpg", kStamp, std::nullopt}};
  (void)search();
  const auto before = files_.content["/cache"];
  own_.files.pop_back();
  own_.duringSearch = [this](const std::stop_token&) { stop_.request_stop(); };
  (void)search();
  EXPECT_EQ(files_.content["/cache"], before);
}

TEST_F(PictureSearchTest, ASearchGivenUpBeforeItBeginsAsksNoFurtherIndex) {
  stop_.request_stop();
  EXPECT_THAT(search(), IsEmpty());
  EXPECT_THAT(own_.opened, IsEmpty());
}

TEST_F(PictureSearchTest, ThousandsOfPicturesAreFoundEachOnce) {
  constexpr std::size_t kFiles = 5000;
  for (std::size_t i = 0; i < kFiles; ++i)
    own_.files.push_back({"/p/" + std::to_string(i) + ".jpg", kStamp, std::nullopt});
  std::vector<std::string> found = search();
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found.size(), kFiles);
  EXPECT_EQ(std::unique(found.begin(), found.end()), found.end());
}

}  // namespace
}  // namespace lumivane

// The walk over a tree made to trip it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "collection/DirectoryWalk.h"
#include "collection/FollowedFolders.h"
#include "platform/PrintableText.h"
#include "tests/support/AwkwardTree.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

class AwkwardTreeWalk : public testing::Test {
 protected:
  std::vector<std::string> sortedPictures(AskPermission ask = {}) {
    DirectoryWalk walk({.mainDirectoryLocation = tree_.folder(), .askPermission = std::move(ask)}, log_);
    walk.scanDirectoryByHand();
    std::vector<std::string> pictures = walk.takeResult().imagefiles;
    std::sort(pictures.begin(), pictures.end());
    return pictures;
  }

  TemporaryFolder folder_;
  // A long name, so that the deepest folder lies beyond the longest path.
  AwkwardTree tree_{folder_.makeFolder(std::string(60, 't'))};
  RecordingLog log_;
};

TEST_F(AwkwardTreeWalk, FindsTheRightPicturesAndNoOthers) {
  const auto before = tree_.inventory();
  EXPECT_EQ(sortedPictures(), tree_.expectedPictures());
  EXPECT_EQ(tree_.inventory(), before);
  EXPECT_FALSE(std::filesystem::exists("PWNED"));
}

TEST_F(AwkwardTreeWalk, TellsWhatItLeavesOutOnceEach) {
  sortedPictures();
  const auto leftOut = tree_.expectedLeftOut();
  ASSERT_EQ(leftOut.size(), 4U);
  for (const std::string& name : leftOut) {
    const std::string shown = printable(tree_.folder() + "/" + name);
    const auto entries = log_.entries();
    EXPECT_EQ(std::count_if(entries.begin(), entries.end(),
                            [&](const RecordingLog::Entry& entry) {
                              return entry.level == LogLevel::Error &&
                                     entry.text.find(shown) != std::string::npos;
                            }),
              1)
        << shown;
  }
}

TEST_F(AwkwardTreeWalk, LogHoldsNoRawBytesOfNames) {
  sortedPictures();
  for (const RecordingLog::Entry& entry : log_.entries()) {
    std::string text = entry.text;
    text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
    EXPECT_EQ(text, printable(text));
    EXPECT_LE(std::count(entry.text.begin(), entry.text.end(), '\n'), 1) << "a name with a line feed";
  }
}

TEST_F(AwkwardTreeWalk, AsksForEachFolderBehindALink) {
  std::vector<std::string> questions;
  sortedPictures([&](const std::string& folder, const std::stop_token&) {
    questions.push_back(folder);
    return PermissionAnswer{};
  });
  std::vector<std::string> expected = {tree_.folder() + "/visible", tree_.folder(), tree_.folder()};
  const std::string library = samplesFolder() + "/libraries/Test-10.15.7.photoslibrary";
  if (std::filesystem::exists(library)) expected.push_back(library);
  EXPECT_THAT(questions, testing::UnorderedElementsAreArray(expected));
  EXPECT_TRUE(log_.has("Alias resolution failed: " + tree_.folder() + "/loop-a !", LogLevel::Information));
}

TEST_F(AwkwardTreeWalk, FollowingLinksFindsNothingTwice) {
  std::filesystem::remove(tree_.folder() + "/Link Library.photoslibrary");
  FollowedFolders followed(tree_.folder());
  EXPECT_EQ(sortedPictures(
                [&](const std::string& folder, const std::stop_token&) { return followed.answer(folder); }),
            tree_.expectedPictures());
}

TEST_F(AwkwardTreeWalk, PicturesComeAndGo) {
  tree_.finishGrowing();
  tree_.removeVanishing();
  auto expected = tree_.expectedPictures();
  expected.erase(std::find(expected.begin(), expected.end(), tree_.folder() + "/vanishing.jpg"));
  EXPECT_EQ(sortedPictures(), expected);
}

}  // namespace
}  // namespace lumivane

#include "collection/FinishedScan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(FinishedScan, CountTellsTheFoldersBehindLinksOfAWalk) {
  EXPECT_EQ(scanCountText(false, 12, 3), "12   (# alias dirs = 2)");
  EXPECT_EQ(scanCountText(true, 12, 1), "12");
  EXPECT_EQ(scanCountText(false, 0, 1), "0   (# alias dirs = 0)");
}

TEST(FinishedScan, CountsMakesBookmarksAndSorts) {
  const TemporaryFolder folder;
  RecordingLog log;
  const FinishedScan finished =
      finishScan({{"/p/file10.jpg", "/p/file2.jpg"}, {folder.path()}}, false, "en_US", log);
  EXPECT_EQ(finished.countText, "2   (# alias dirs = 0)");
  EXPECT_THAT(finished.imagefiles, ElementsAre("/p/file2.jpg", "/p/file10.jpg"));
  ASSERT_TRUE(finished.directoryBookmarks);
  EXPECT_EQ(resolveBookmarks(finished.directoryBookmarks, log).mainDirectoryLocation, folder.path());
}

TEST(FinishedScan, AnEmptyResultIsFinishedToo) {
  RecordingLog log;
  const FinishedScan finished = finishScan({}, false, "", log);
  EXPECT_EQ(finished.countText, "0   (# alias dirs = 0)");
  EXPECT_THAT(finished.imagefiles, IsEmpty());
  EXPECT_THAT(*finished.directoryBookmarks, IsEmpty());
}

}  // namespace
}  // namespace lumivane

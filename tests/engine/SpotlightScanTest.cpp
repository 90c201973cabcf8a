#include "engine/SpotlightScan.h"

#include "tests/support/FakeMetadataQuery.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SpotlightScanTest : testing::Test {
  void start(SpotlightRequest request = {"/pictures", 5, 200, {}}) {
    scan = std::make_unique<SpotlightScan>(
        std::move(request), index, clock, loop, log, nullptr,
        FolderScanEvents{.progressed = [this](std::size_t count) { counts.push_back(count); },
                         .logAndDisplay = [](const std::string&) { ADD_FAILURE(); },
                         .finished = [this](WalkResult result) { found = std::move(result); }});
  }
  void poll() { loop.runFor(std::chrono::milliseconds(250)); }
  void addResults(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
      index.results.push_back("/pictures/" + std::to_string(i) + ".jpg");
  }

  VirtualClock clock;
  VirtualMainLoop loop{clock};
  RecordingLog log;
  FakeMetadataQuery index{clock};
  std::vector<std::size_t> counts;
  std::optional<WalkResult> found;
  std::unique_ptr<SpotlightScan> scan;
};

TEST(SpotlightPredicate, limitsAreThoseOfTheSettings) {
  EXPECT_EQ(predicateOf({"/p", 5, 300, {}}), (PicturePredicate{"/p", 5120, 300}));
  EXPECT_EQ(predicateOf({"/p", 0, 50, {}}).largerThanBytes, 0U);
  EXPECT_EQ(predicateOf({"/p", 4194304, 50, {}}).largerThanBytes, 0U) << "wraps at 4 GiB";
  EXPECT_EQ(predicateOf({"/p", 4194305, 50, {}}).largerThanBytes, 1024U);
}

TEST_F(SpotlightScanTest, asksOnceAndLooksFourTimesASecond) {
  start();
  EXPECT_THAT(index.started, ElementsAre(PicturePredicate{"/pictures", 5120, 200}));
  loop.runFor(std::chrono::milliseconds(249));
  EXPECT_THAT(counts, IsEmpty());
  addResults(3);
  poll();
  addResults(4);
  poll();
  EXPECT_THAT(counts, ElementsAre(3U, 7U));
  EXPECT_FALSE(index.updatesDisabled);
  EXPECT_THAT(log.entries(), IsEmpty());
}

TEST_F(SpotlightScanTest, copiesWhatWasFoundInTheIndexsOrder) {
  start();
  index.results = {"/pictures/b.jpg", "/pictures/a.jpg"};
  index.gathering = false;
  poll();
  ASSERT_TRUE(found);
  EXPECT_TRUE(index.updatesDisabled);
  EXPECT_THAT(found->imagefiles, ElementsAre("/pictures/b.jpg", "/pictures/a.jpg"));
  EXPECT_THAT(found->rootDirectories, ElementsAre("/pictures"));
  EXPECT_EQ(log.countStartingWith("Finished spotlight search; num images from query = 2  (id = "), 1U);
  EXPECT_EQ(index.stops, 1);
}

TEST_F(SpotlightScanTest, nothingFoundIsAnEndToo) {
  start();
  index.gathering = false;
  poll();
  ASSERT_TRUE(found);
  EXPECT_THAT(found->imagefiles, IsEmpty());
  EXPECT_EQ(log.countStartingWith("Finished spotlight search; num images from query = 0  (id = "), 1U);
}

TEST_F(SpotlightScanTest, whatIsSkippedIsStillCountedByTheIndex) {
  start({"/pictures", 5, 200, {".*/thumb.*"}});
  index.results = {"/pictures/thumb1.jpg", "/pictures/a.jpg"};
  index.gathering = false;
  poll();
  EXPECT_EQ(log.countStartingWith("Finished spotlight search; num images from query = 2  (id = "), 1U);
  EXPECT_THAT(found->imagefiles, ElementsAre("/pictures/a.jpg"));
}

TEST_F(SpotlightScanTest, copiesInSlicesOfAFifthOfASecond) {
  start();
  addResults(10);
  index.gathering = false;
  index.timePerResult = std::chrono::milliseconds(60);
  // 60, 120 and 180 ms are within the slice, 240 ms is beyond it: four results a poll.
  poll();
  EXPECT_THAT(counts, ElementsAre(4U));
  EXPECT_FALSE(found);
  poll();
  EXPECT_THAT(counts, ElementsAre(4U, 8U));
  poll();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->imagefiles.size(), 10U);
  EXPECT_EQ(log.countStartingWith("Finished spotlight search"), 1U) << "said once";
}

TEST_F(SpotlightScanTest, exactlyAFifthOfASecondIsNotTooLong) {
  start();
  addResults(3);
  index.gathering = false;
  index.timePerResult = std::chrono::milliseconds(100);
  poll();
  EXPECT_THAT(counts, ElementsAre(3U)) << "the third ends beyond the slice";
  EXPECT_FALSE(found);
  poll();
  EXPECT_TRUE(found);
}

TEST_F(SpotlightScanTest, copiesAtLeastOneResultAtATime) {
  start();
  addResults(2);
  index.gathering = false;
  index.timePerResult = std::chrono::seconds(1);
  poll();
  EXPECT_THAT(counts, ElementsAre(1U));
  poll();
  poll();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->imagefiles.size(), 2U);
}

TEST_F(SpotlightScanTest, looksNoMoreWhenItIsOver) {
  start();
  index.gathering = false;
  poll();
  found.reset();
  for (int i = 0; i < 10; ++i) poll();
  EXPECT_FALSE(found);
  EXPECT_EQ(index.stops, 1);
}

TEST_F(SpotlightScanTest, givenUpItTellsNothing) {
  start();
  scan->abandon();
  index.gathering = false;
  poll();
  EXPECT_FALSE(found);
  EXPECT_EQ(index.stops, 1);
  scan.reset();
  EXPECT_EQ(index.stops, 1);
}

}  // namespace
}  // namespace lumivane

#include "app/FrameStatistics.h"

#include <nlohmann/json.hpp>
#include <thread>

namespace lumivane {
namespace {

using namespace std::chrono_literals;

TEST(IntervalHistogram, KnowsHowLongMostIntervalsWere) {
  IntervalHistogram histogram;
  EXPECT_EQ(histogram.quantile(0.5), 0ms);
  for (int i = 1; i <= 1000; ++i) histogram.add(std::chrono::milliseconds(i));
  EXPECT_EQ(histogram.count(), 1000u);
  EXPECT_EQ(histogram.quantile(0.5), 500ms + 100us);
  EXPECT_EQ(histogram.quantile(0.99), 990ms + 100us);
  EXPECT_EQ(histogram.quantile(1), 1000ms);
  EXPECT_EQ(histogram.maximum(), 1000ms);
}

TEST(IntervalHistogram, HasRoomForTheLongestAndTheShortest) {
  IntervalHistogram histogram;
  histogram.add(-1ms);
  histogram.add(24h);
  EXPECT_EQ(histogram.quantile(0.5), 100us);
  EXPECT_EQ(histogram.maximum(), 24h);
  EXPECT_GE(histogram.quantile(1), IntervalHistogram::kLongest);
}

class FrameStatisticsTest : public ::testing::Test {
 protected:
  void show(Nanoseconds at, bool moving, std::size_t pictures = 1, Nanoseconds upload = 0ms,
            bool anotherPicture = false) {
    statistics.frameShown({.begun = MediaTime(at),
                           .shown = MediaTime(at),
                           .refreshInterval = Seconds(0.02),
                           .moving = moving,
                           .longestUpload = upload,
                           .pictures = pictures,
                           .anotherPicture = anotherPicture});
  }
  [[nodiscard]] nlohmann::json told(Nanoseconds end = 10s) const {
    return nlohmann::json::parse(statistics.text(MediaTime(end), {.programBytes = 123, .decoderBytes = 456}));
  }
  FrameStatistics statistics{MediaTime(1s)};
};

TEST_F(FrameStatisticsTest, TellsNothingOfAShowThatNeverBegan) {
  EXPECT_EQ(told()["framesDrawn"], 0);
  EXPECT_EQ(told()["secondsShown"], 0);
  EXPECT_TRUE(told()["startToFirstPicture"].is_null());
  EXPECT_EQ(told()["frameIntervals"]["maximum"], 0);
  EXPECT_EQ(told()["decodes"]["count"], 0);
  EXPECT_EQ(told()["decodes"]["maximum"], 0);
  EXPECT_EQ(told()["peakMemoryBytes"], 123);
  EXPECT_EQ(told()["decoderPeakMemoryBytes"], 456);
}

TEST_F(FrameStatisticsTest, CountsIntervalsWhileSomethingMoves) {
  show(2s, false, 0);
  show(3s, true);  // nothing moved before it: no interval
  show(3s + 20ms, true);
  show(3s + 40ms, false);
  show(9s, false);
  EXPECT_EQ(told()["framesDrawn"], 5);
  EXPECT_EQ(told()["secondsShown"], 8);
  EXPECT_EQ(told()["startToFirstPicture"], 2000);
  EXPECT_EQ(told()["frameIntervals"]["count"], 2);
  EXPECT_EQ(told()["frameIntervals"]["maximum"], 20);
}

TEST_F(FrameStatisticsTest, TellsWhenLateFramesCame) {
  show(1s, true);
  show(1s + 30ms, true);                 // just in time
  show(1s + 61ms, true);                 // late
  show(1s + 100ms, true, 2);             // late in a dissolve
  show(1s + 200ms, true, 1, 0ms, true);  // late at a cut
  EXPECT_EQ(told()["lateFrames"]["whileAPictureStands"], 1);
  EXPECT_EQ(told()["lateFrames"]["whilePicturesChange"], 2);
}

TEST_F(FrameStatisticsTest, KeepsTheLongestUploadAndAnswer) {
  show(1s, true, 1, 3ms);
  show(2s, true, 1, 5ms);
  show(3s, true);
  statistics.mainThreadAnswered(4ms);
  statistics.mainThreadAnswered(70ms);
  EXPECT_EQ(told()["uploads"]["framesAfterSome"], 2);
  EXPECT_EQ(told()["uploads"]["longestSlice"], 5);
  EXPECT_EQ(told()["mainThreadAnswers"]["maximum"], 70);
  EXPECT_EQ(told()["mainThreadAnswers"]["count"], 2);
}

TEST_F(FrameStatisticsTest, CountsDecodesOfSeveralThreads) {
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this, thread] {
      for (int i = 1; i <= 25; ++i) statistics.pictureDecoded(std::chrono::milliseconds(thread * 25 + i));
    });
  }
  threads.clear();
  const nlohmann::json decodes = told()["decodes"];
  EXPECT_EQ(decodes["count"], 100);
  EXPECT_EQ(decodes["median"], 50.1);  // to the tenth of a millisecond, rounded up
  EXPECT_EQ(decodes["percentile99"], 99.1);
  EXPECT_EQ(decodes["maximum"], 100);
}

}  // namespace
}  // namespace lumivane

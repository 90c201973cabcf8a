#include "collection/index/MeasuringThreads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>

#include "tests/support/FakePictureDimensions.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

std::string pathOf(std::size_t i) {
  return "/p/" + std::to_string(i) + ".jpg";
}

// Never done with a batch before the test lets it.
class HeldDimensions final : public PictureDimensions {
 public:
  std::latch begun{1};
  std::latch released{1};
  [[nodiscard]] std::vector<std::optional<SizePx>> measure(const std::vector<std::string>& paths) override {
    if (!told_.exchange(true)) begun.count_down();  // one of several threads
    released.wait();
    return std::vector<std::optional<SizePx>>(paths.size(), SizePx{1, 1});
  }

 private:
  std::atomic<bool> told_ = false;
};

TEST(MeasuringThreads, EveryFileIsMeasuredOnceAndGetsItsOwnSize) {
  constexpr std::size_t kFiles = MeasuringThreads::kBatch * 100 + 7;
  FakePictureDimensions dimensions;
  for (std::size_t i = 0; i < kFiles; ++i) dimensions.sizes[pathOf(i)] = {static_cast<int>(i) + 1, 1};
  RecordingLog log;
  MeasuringThreads threads(dimensions, log);
  std::map<std::string, int> widths;
  const auto takeAll = [&] {
    for (const IndexedFile& file : threads.take()) {
      ASSERT_TRUE(file.size);
      EXPECT_TRUE(widths.emplace(file.path, file.size->width).second) << file.path;
    }
  };
  for (std::size_t i = 0; i < kFiles; ++i) {
    threads.add({pathOf(i), {}, std::nullopt}, {});
    takeAll();
  }
  threads.finish({});
  takeAll();
  ASSERT_EQ(widths.size(), kFiles);
  for (std::size_t i = 0; i < kFiles; ++i) EXPECT_EQ(widths[pathOf(i)], static_cast<int>(i) + 1);
}

TEST(MeasuringThreads, NothingToDoIsFinishedAtOnce) {
  FakePictureDimensions dimensions;
  RecordingLog log;
  MeasuringThreads threads(dimensions, log);
  threads.finish({});
  EXPECT_TRUE(threads.take().empty());
}

TEST(MeasuringThreads, ABatchThatThrowsLeavesItsFilesUnmeasured) {
  FakePictureDimensions dimensions;
  dimensions.other = SizePx{5, 5};
  dimensions.thrownAt = {pathOf(0)};
  RecordingLog log;
  MeasuringThreads threads(dimensions, log);
  for (std::size_t i = 0; i < MeasuringThreads::kBatch + 1; ++i)
    threads.add({pathOf(i), {}, std::nullopt}, {});
  threads.finish({});
  std::size_t measured = 0;
  const auto files = threads.take();
  for (const IndexedFile& file : files) measured += file.size ? 1 : 0;
  EXPECT_EQ(files.size(), MeasuringThreads::kBatch + 1);
  EXPECT_EQ(measured, 1U);
  EXPECT_TRUE(log.has("Pictures could not be measured: a fault !", LogLevel::Error));
}

TEST(MeasuringThreads, WhoAddsAndWhoFinishesStopsWaitingWhenAsked) {
  HeldDimensions dimensions;
  RecordingLog log;
  MeasuringThreads threads(dimensions, log);
  std::stop_source stop;
  std::jthread stopper([&] {
    dimensions.begun.wait();
    stop.request_stop();
  });
  // More than may wait: without the stop this would never return.
  const std::size_t most =
      (MeasuringThreads::kMostWaiting + MeasuringThreads::kThreads + 2) * MeasuringThreads::kBatch;
  for (std::size_t i = 0; i < most; ++i) threads.add({pathOf(i), {}, std::nullopt}, stop.get_token());
  threads.finish(stop.get_token());
  dimensions.released.count_down();
}

}  // namespace
}  // namespace lumivane

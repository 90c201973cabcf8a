#include "collection/index/IndexQuery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <latch>
#include <mutex>
#include <thread>

#include "tests/support/FakeFileIndex.h"
#include "tests/support/FakePictureDimensions.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::UnorderedElementsAre;

constexpr FileStamp kStamp{1000, 7};
constexpr SizePx kSize{500, 500};

class IndexQueryTest : public testing::Test {
 protected:
  std::vector<std::string> results() {
    while (query_->isGathering()) std::this_thread::yield();
    query_->disableUpdates();
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < query_->resultCount(); ++i) paths.push_back(query_->path(i));
    return paths;
  }

  FakeFileIndex index_;
  FakePictureDimensions dimensions_;
  MemoryFiles files_;
  RecordingLog log_;
  std::latch released_{1};  // outlives every search
  std::unique_ptr<IndexQuery> query_ =
      std::make_unique<IndexQuery>(PictureSources{{&index_}, dimensions_, files_, "", log_});
};

TEST_F(IndexQueryTest, BeforeASearchThereIsNothing) {
  EXPECT_FALSE(query_->isGathering());
  EXPECT_EQ(query_->resultCount(), 0U);
  query_->stop();
}

TEST_F(IndexQueryTest, GathersAndThenStandsStill) {
  index_.files = {{"/p/a.jpg", kStamp, kSize}, {"/p/b.jpg", kStamp, kSize}};
  query_->start({"/p", 0, 0});
  EXPECT_THAT(results(), UnorderedElementsAre("/p/a.jpg", "/p/b.jpg"));
  query_->stop();
  EXPECT_EQ(query_->resultCount(), 0U);
  EXPECT_FALSE(query_->isGathering());
}

TEST_F(IndexQueryTest, ItsGrowingCountCanBeReadMeanwhile) {
  std::latch counted{1};
  index_.files = {{"/p/a.jpg", kStamp, kSize}};
  index_.duringSearch = [&](const std::stop_token&) { counted.wait(); };
  query_->start({"/p", 0, 0});
  while (query_->resultCount() == 0) std::this_thread::yield();
  EXPECT_TRUE(query_->isGathering());
  EXPECT_EQ(query_->path(0), "/p/a.jpg");
  counted.count_down();
  EXPECT_EQ(results().size(), 1U);
}

TEST_F(IndexQueryTest, GivingUpDoesNotWaitAndANewSearchDoesNotSeeTheOldOne) {
  index_.files = {{"/p/a.jpg", kStamp, kSize}};
  index_.duringSearch = [&](const std::stop_token&) { released_.wait(); };  // deaf to the stop
  query_->start({"/p", 0, 0});
  while (query_->resultCount() == 0) std::this_thread::yield();
  query_->stop();
  EXPECT_EQ(query_->resultCount(), 0U);
  query_->start({"/q", 0, 100'000});
  EXPECT_EQ(query_->resultCount(), 0U);
  released_.count_down();
  EXPECT_TRUE(results().empty());
}

TEST_F(IndexQueryTest, ASearchThatRunsIsToldToEndWithTheObject) {
  std::latch begun{1};
  bool stopped = false;
  index_.duringSearch = [&](const std::stop_token& stop) {
    begun.count_down();
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any never;
    never.wait(lock, stop, [] { return false; });
    stopped = stop.stop_requested();
  };
  query_->start({"/p", 0, 0});
  begun.wait();
  query_.reset();
  EXPECT_TRUE(stopped);
}

TEST_F(IndexQueryTest, WhatThrowsEndsTheSearchWithWhatItHas) {
  index_.files = {{"/p/a.jpg", kStamp, kSize}};
  index_.duringSearch = [](const std::stop_token&) { throw std::runtime_error("a fault"); };
  query_->start({"/p", 0, 0});
  EXPECT_THAT(results(), UnorderedElementsAre("/p/a.jpg"));
  EXPECT_TRUE(log_.has("The search broke off: a fault !", LogLevel::Error));
}

}  // namespace
}  // namespace lumivane

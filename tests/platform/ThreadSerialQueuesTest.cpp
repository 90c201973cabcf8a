#include "platform/linux/ThreadSerialQueues.h"

#include <pthread.h>

#include <array>
#include <future>
#include <latch>
#include <numeric>
#include <stdexcept>
#include <thread>

#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

class ThreadSerialQueuesTest : public ::testing::Test {
 protected:
  // Waits until everything that was handed over before is done.
  static void drain(SerialQueue& queue) {
    std::latch reached(1);
    queue.async([&] { reached.count_down(); });
    reached.wait();
  }

  RecordingLog log_;
  ThreadSerialQueues queues_{log_};
};

TEST_F(ThreadSerialQueuesTest, RunsJobsInOrderOnOneOtherThread) {
  const auto queue = queues_.make("LumivanePrefetchQueue");
  std::vector<int> order;  // without a lock: the queue is the lock
  std::vector<std::thread::id> threads;
  for (int i = 0; i < 1000; ++i) {
    queue->async([&, i] {
      order.push_back(i);
      threads.push_back(std::this_thread::get_id());
    });
  }
  drain(*queue);
  std::vector<int> expected(1000);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(order, expected);
  EXPECT_THAT(threads, ::testing::Each(threads.front()));
  EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST_F(ThreadSerialQueuesTest, TheThreadHasTheQueuesName) {
  const auto queue = queues_.make("LumivanePrefetchQueue");
  drain(*queue);  // and has had it before its first job at the latest when the maker is back
  std::promise<std::string> name;
  queue->async([&] {
    std::array<char, 16> text{};
    pthread_getname_np(pthread_self(), text.data(), text.size());
    name.set_value(text.data());
  });
  EXPECT_EQ(name.get_future().get(), "LumivanePrefetc");
}

TEST_F(ThreadSerialQueuesTest, GoesOnAfterAJobThatFailed) {
  const auto queue = queues_.make("Q");
  queue->async([] { throw std::runtime_error("no such picture"); });
  queue->async([] { throw 1; });
  drain(*queue);
  EXPECT_TRUE(log_.has("Q: a job failed: no such picture", LogLevel::Error));
  EXPECT_TRUE(log_.has("Q: a job failed", LogLevel::Error));
}

TEST_F(ThreadSerialQueuesTest, DestructionWaitsForTheRunningJobAndDropsTheRest) {
  auto queue = queues_.make("Q");
  std::latch running(1);
  std::latch goOn(1);
  bool finished = false;
  auto dropped = std::make_shared<int>(0);
  queue->async([&] {
    running.count_down();
    goOn.wait();
    finished = true;
  });
  queue->async([dropped] { ++*dropped; });
  running.wait();
  // The job is let go on only by a thread that knows nothing of the destruction: it may come before or during it.
  std::jthread other([&] { goOn.count_down(); });
  std::thread destroyer([&] { queue.reset(); });
  destroyer.join();
  EXPECT_TRUE(finished);
  EXPECT_EQ(dropped.use_count(), 1);
}

TEST_F(ThreadSerialQueuesTest, AJobMayHandOverAnother) {
  const auto queue = queues_.make("Q");
  std::promise<void> reached;
  queue->async([&] { queue->async([&] { reached.set_value(); }); });
  reached.get_future().wait();
}

TEST_F(ThreadSerialQueuesTest, TakesJobsFromManyThreads) {
  const auto queue = queues_.make("Q");
  int count = 0;
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([&] {
        for (int i = 0; i < 250; ++i) queue->async([&] { ++count; });
      });
    }
  }
  drain(*queue);
  EXPECT_EQ(count, 1000);
}

}  // namespace
}  // namespace lumivane

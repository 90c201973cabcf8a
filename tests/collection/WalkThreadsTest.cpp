// The walk on a thread of its own, and its questions to the main thread. Run again under ThreadSanitizer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>
#include <thread>

#include "collection/DirectoryWalk.h"
#include "collection/MainThreadQuestion.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using testing::ElementsAre;

constexpr auto kDeadline = std::chrono::seconds(60);

// A main loop whose jobs run when the test says so, posted from any thread.
class PostingLoop final : public MainLoop {
 public:
  void post(Job job) override {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    posted_.notify_all();
  }
  void after(Nanoseconds /*delay*/, Job /*job*/) override { ADD_FAILURE(); }
  [[nodiscard]] std::unique_ptr<Timer> every(Nanoseconds, Nanoseconds, Job) override { return nullptr; }

  // Waits for the next job and hands it over unrun.
  [[nodiscard]] Job next() {
    std::unique_lock lock(mutex_);
    if (!posted_.wait_for(lock, kDeadline, [this] { return !jobs_.empty(); })) return [] { ADD_FAILURE(); };
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    return job;
  }

 private:
  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<Job> jobs_;
};

void waitUntilFinished(const DirectoryWalk& walk) {
  const auto end = std::chrono::steady_clock::now() + kDeadline;
  while (!walk.isFinished() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  ASSERT_TRUE(walk.isFinished());
}

class WalkThreads : public testing::Test {
 protected:
  WalkThreads() {
    elsewhere_.write("b.jpg", "x");
    folder_.write("a.jpg", "x");
    std::filesystem::create_directory_symlink(elsewhere_.path(), folder_ / "link");
  }
  WalkRequest request(MainThreadQuestion& question) {
    return {.mainDirectoryLocation = folder_.path(),
            .askPermission = [&question](const std::string& folder, const std::stop_token& stop) {
              return question.ask(folder, stop);
            }};
  }
  TemporaryFolder folder_;
  TemporaryFolder elsewhere_;
  RecordingLog log_;
  PostingLoop loop_;
};

TEST_F(WalkThreads, CountIsReadWhileTheListGrows) {
  constexpr std::size_t kPictures = 500;
  for (std::size_t i = 0; i < kPictures; ++i) folder_.write("sub/" + std::to_string(i) + ".jpg", "x");
  DirectoryWalk walk({.mainDirectoryLocation = folder_.path()}, log_);
  walk.start();
  std::size_t last = 0;
  while (!walk.isFinished()) {
    const std::size_t now = walk.numImages();
    EXPECT_GE(now, last);
    last = now;
  }
  EXPECT_EQ(walk.numImages(), kPictures + 1);
  EXPECT_EQ(walk.takeResult().imagefiles.size(), kPictures + 1);
}

TEST_F(WalkThreads, QuestionIsPutOnTheMainThreadAndAnsweredLater) {
  MainThreadQuestion::Reply reply;
  std::string asked;
  MainThreadQuestion question(loop_, [&](const std::string& folder, MainThreadQuestion::Reply answer) {
    asked = folder;
    reply = std::move(answer);
  });
  DirectoryWalk walk(request(question), log_);
  walk.start();
  loop_.next()();
  EXPECT_EQ(asked, elsewhere_.path());
  EXPECT_FALSE(walk.isFinished()) << "the walk waits for the answer";
  reply({kUserConfirmed, elsewhere_.path()});
  waitUntilFinished(walk);
  EXPECT_THAT(walk.takeResult().rootDirectories, ElementsAre(folder_.path(), elsewhere_.path()));
  reply({kUserConfirmed, "/too/late"});
}

TEST_F(WalkThreads, DroppedReplyIsADenial) {
  MainThreadQuestion question(loop_, [](const std::string&, const MainThreadQuestion::Reply&) {});
  DirectoryWalk walk(request(question), log_);
  walk.start();
  loop_.next()();
  waitUntilFinished(walk);
  EXPECT_TRUE(log_.has("   user denied (response = 0)", LogLevel::Information));
}

TEST_F(WalkThreads, QuestionThatTheMainLoopDropsIsADenial) {
  MainThreadQuestion question(loop_,
                              [](const std::string&, const MainThreadQuestion::Reply&) { ADD_FAILURE(); });
  DirectoryWalk walk(request(question), log_);
  walk.start();
  { const Job dropped = loop_.next(); }
  waitUntilFinished(walk);
  EXPECT_THAT(walk.takeResult().imagefiles, ElementsAre(folder_ / "a.jpg"));
}

TEST_F(WalkThreads, ProgramMayEndWhileTheQuestionIsOpen) {
  MainThreadQuestion question(loop_,
                              [](const std::string&, const MainThreadQuestion::Reply&) { ADD_FAILURE(); });
  Job job;
  {
    DirectoryWalk walk(request(question), log_);
    walk.start();
    job = loop_.next();
  }
  job();  // comes too late to be put
  EXPECT_EQ(log_.countStartingWith("Finished directory scan"), 0U);
}

TEST_F(WalkThreads, WalkIsBrokenOffWhenItsOwnerEnds) {
  for (int i = 0; i < 300; ++i) folder_.write(std::to_string(i) + "/a.jpg", "x");
  for (int i = 0; i < 10; ++i) {
    DirectoryWalk walk({.mainDirectoryLocation = folder_.path()}, log_);
    walk.start();
  }
}

}  // namespace
}  // namespace lumivane

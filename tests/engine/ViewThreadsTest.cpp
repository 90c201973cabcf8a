// The view with a real prefetch queue and a real clock: everything that crosses threads does so by hand-over.
#include <condition_variable>
#include <deque>
#include <mutex>

#include "platform/linux/SystemClock.h"
#include "platform/linux/ThreadSerialQueues.h"
#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

// A main loop whose delayed jobs run at once, on the thread that asks for them.
class HurriedMainLoop final : public MainLoop {
 public:
  void post(Job job) override {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    posted_.notify_one();
  }
  void after(Nanoseconds /*delay*/, Job job) override { post(std::move(job)); }
  [[nodiscard]] std::unique_ptr<Timer> every(Nanoseconds, Nanoseconds, Job) override { return nullptr; }

  // Runs jobs until the condition holds; false when it never does.
  bool runUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
      std::unique_lock lock(mutex_);
      if (!posted_.wait_until(lock, deadline, [this] { return !jobs_.empty(); })) return false;
      Job job = std::move(jobs_.front());
      jobs_.pop_front();
      lock.unlock();
      job();
    }
    return true;
  }

 private:
  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<Job> jobs_;  // guarded by mutex_
};

struct ViewThreadsTest : ViewTest {
  HurriedMainLoop hurried;
  ThreadSerialQueues threads{log};
};

TEST_F(ViewThreadsTest, prefetchesOnAThreadOfItsOwn) {
  listPictures(40);
  settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
  view = LumivaneView::initWithFrame({{0, 0}, {1920, 1080}}, false, hostWith(hurried, threads));
  view->viewWillMoveToWindow(&window);
  std::string last;
  for (int i = 0; i < 100; ++i) {
    view->startNewCycle();
    view->animateOneFrame();
    if (i == 0) {  // the first one has to be waited for
      ASSERT_TRUE(hurried.runUntil([this] { return view->prefetchSlot().full(); }));
      view->animateOneFrame();
    }
    ASSERT_NE(view->filename(), last);
    last = view->filename();
    ASSERT_TRUE(hurried.runUntil([this] { return view->prefetchSlot().full(); }));
  }
  EXPECT_EQ(log.countStartingWith("Loading image in main thread"), 1U);
}

TEST_F(ViewThreadsTest, endsWhileAPictureIsBeingDecoded) {
  listPictures(40);
  settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
  for (int i = 0; i < 20; ++i) {
    view = LumivaneView::initWithFrame({{0, 0}, {1920, 1080}}, false, hostWith(hurried, threads));
    view->viewWillMoveToWindow(&window);
    view->startNewCycle();
    view->animateOneFrame();
    ASSERT_TRUE(hurried.runUntil([this] { return view->prefetchSlot().prefetchNextImageRunning_; }));
    view.reset();
  }
}

}  // namespace
}  // namespace lumivane

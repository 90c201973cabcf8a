// The view, the hand-over of its tree and the thread that draws, together: while nothing moves, nothing is drawn.
#include <atomic>
#include <condition_variable>
#include <mutex>

#include "app/LayerTreeCommit.h"
#include "compositor/render/RenderThread.h"
#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

// The show's virtual time, as the render thread may look at it.
class SharedClock final : public Clock {
 public:
  void setNow(MediaTime now) { now_ = now; }
  [[nodiscard]] MediaTime now() const override { return now_; }
  [[nodiscard]] WallTime wallTime() const override { return {}; }

 private:
  std::atomic<MediaTime> now_{MediaTime{}};
};

class IdleSurface final : public GlSurface {
 public:
  bool makeCurrent() override { return true; }
  void doneCurrent() override {}
  void swapBuffers() override {}
  [[nodiscard]] SizePx sizePx() const override { return {1920, 1080}; }
  [[nodiscard]] Seconds refreshInterval() const override { return Seconds{0.001}; }
  [[nodiscard]] bool drawable() const override { return true; }
};

class IdlePainter final : public Painter {
 public:
  void want(std::span<const WantedTexture>) override {}
  UploadProgress upload(Nanoseconds) override { return {}; }
  void draw(const DrawList&, SizePx) override {}
  [[nodiscard]] std::optional<std::string> failure() override { return std::nullopt; }
  void abandon() override {}
};

class FrameCounter final : public FrameWatcher {
 public:
  void frameShown(const ShownFrame& frame) override {
    const std::lock_guard lock(mutex_);
    ++frames_;
    moving_ = frame.moving;
    shown_.notify_all();
  }
  [[nodiscard]] int frames() const {
    const std::lock_guard lock(mutex_);
    return frames_;
  }
  bool waitForMoreThan(int frames) {
    std::unique_lock lock(mutex_);
    return shown_.wait_for(lock, std::chrono::seconds{20}, [&] { return frames_ > frames; });
  }
  bool waitForTheLastAfter(int frames) {
    std::unique_lock lock(mutex_);
    return shown_.wait_for(lock, std::chrono::seconds{20}, [&] { return frames_ > frames && !moving_; });
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable shown_;
  int frames_ = 0;       // guarded by mutex_
  bool moving_ = false;  // the last of them; guarded by mutex_
};

class NothingMovesTest : public ViewTest {
 protected:
  // Motion and dissolves, unless a test wants a still show.
  NothingMovesTest() {
    change([](DisplaySettings& s) { s.durationPerImage_ = 20; });
    listPictures(30);
  }
  void change(const std::function<void(DisplaySettings&)>& more) {
    configure([&](DisplaySettings& s) {
      s.kenBurnsIsOn_ = true;
      s.crossDissolve_ = true;
      more(s);
    });
  }
  void startShow() {
    start();
    thread = std::make_unique<RenderThread>(
        surface, sharedClock, log, [] { return std::make_unique<IdlePainter>(); }, &counter);
    commit = std::make_unique<LayerTreeCommit>(
        view->mainLayer(), window,
        [this](auto snapshot) {
          ++published;
          thread->publish(std::move(snapshot));
        },
        clock, loop);
    thread->setExposed(true);
  }
  void TearDown() override {
    thread.reset();
    ViewTest::TearDown();
  }
  // Lets the show run as the program does, one turn of the main loop after another.
  void play(Seconds span) {
    const MediaTime end = clock.now() + wholeNanoseconds(span);
    while (clock.now() < end) {
      run(Seconds{0.02});
      commit->commit();
      sharedClock.setNow(clock.now());
    }
  }
  // Has everything drawn that was handed over, until nothing moves.
  void drawAllThatIsLeft() {
    thread->setExposed(false);
    const int frames = counter.frames();
    thread->setExposed(true);
    ASSERT_TRUE(counter.waitForTheLastAfter(frames));
  }
  // Ten minutes, after which one more change of the tree is all that is drawn.
  void expectNoFrames() {
    drawAllThatIsLeft();
    const int framesBefore = counter.frames();
    const int publishedBefore = published;
    play(Seconds{600});
    EXPECT_EQ(published, publishedBefore) << "the tree changed though nothing was to be seen of it";
    EXPECT_EQ(counter.frames(), framesBefore);
    view->mainLayer().edit([](LayerProperties& p) { p.backgroundColor = {0.1F, 0, 0, 1}; });
    commit->commit();
    ASSERT_TRUE(counter.waitForMoreThan(framesBefore));
    thread->setExposed(false);  // whatever was being drawn is over
    EXPECT_EQ(counter.frames(), framesBefore + 1);
  }

  SharedClock sharedClock;
  IdleSurface surface;
  FrameCounter counter;
  int published = 0;
  std::unique_ptr<RenderThread> thread;
  std::unique_ptr<LayerTreeCommit> commit;
};

TEST_F(NothingMovesTest, underAStillPicture) {
  change([](DisplaySettings& s) {
    s.kenBurnsIsOn_ = false;
    s.durationPerImage_ = 3600;
  });
  startShow();
  play(Seconds{30});
  ASSERT_TRUE(view->prefetchSlot().full());
  expectNoFrames();
}

TEST_F(NothingMovesTest, pausedAndFrozen) {
  startShow();
  play(Seconds{30});
  press(U' ');
  press(U'z');
  play(Seconds{1});
  ASSERT_EQ(view->currentLayer()->properties().speed, 0);
  expectNoFrames();
}

TEST_F(NothingMovesTest, onABlankScreen) {
  startShow();
  play(Seconds{30});
  press(U'b');
  play(Seconds{1});
  expectNoFrames();
}

// A hidden show that is not stopped goes on behind its window, and its tree changes all the time.
TEST_F(NothingMovesTest, inAHiddenWindow) {
  startShow();
  play(Seconds{30});
  ASSERT_TRUE(counter.waitForMoreThan(0));
  thread->setExposed(false);
  const int framesBefore = counter.frames();
  const int publishedBefore = published;
  play(Seconds{600});
  EXPECT_GT(published, publishedBefore + 25);
  EXPECT_EQ(counter.frames(), framesBefore);
  thread->setExposed(true);
  EXPECT_TRUE(counter.waitForMoreThan(framesBefore)) << "it is drawn as soon as it is seen again";
}

// What the others rely on: as long as a picture moves, frame follows frame.
TEST_F(NothingMovesTest, butAMovingPictureIsDrawnAgainAndAgain) {
  startShow();
  play(Seconds{30});
  const int framesBefore = counter.frames();
  const int publishedBefore = published;
  EXPECT_TRUE(counter.waitForMoreThan(framesBefore + 5));
  EXPECT_EQ(published, publishedBefore);
}

}  // namespace
}  // namespace lumivane

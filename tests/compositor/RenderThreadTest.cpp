// The thread and its loop, with a surface and a painter that only take notes.
#include "compositor/render/RenderThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stdexcept>

#include "tests/support/LayerScenes.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TestBitmaps.h"

namespace lumivane {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr SizePt kScreen{320, 180};

// Goes on by itself, a little at every look, so that an animation ends after so many frames.
class SteppingClock final : public Clock {
 public:
  [[nodiscard]] MediaTime now() const override { return MediaTime(milliseconds{10} * ++looks_); }
  [[nodiscard]] WallTime wallTime() const override { return {}; }

 private:
  mutable std::atomic<int> looks_ = 0;
};

// What happened on the render thread, and a way to wait until something has.
struct Notes {
  template <typename Condition>
  bool waitUntil(Condition condition) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, seconds{20}, condition);
  }
  template <typename Change>
  void note(Change change) {
    const std::lock_guard lock(mutex);
    change();
    changed.notify_all();
  }

  std::mutex mutex;
  std::condition_variable changed;
  // Guarded by mutex.
  int madeCurrent = 0;
  int doneCurrent = 0;
  int swaps = 0;
  int uploads = 0;
  int paintersMade = 0;
  int paintersAlive = 0;
  int abandoned = 0;
  std::vector<DrawList> drawn;
  std::vector<Nanoseconds> budgets;
  // Told to the thread.
  bool contextThere = true;
  bool contextLost = false;  // until it is asked for
  bool drawable = true;
  SizePx size{320, 180};
  bool painterThrows = false;
  bool drawThrows = false;
  std::optional<std::string> failure;
  int uploadsPending = 0;
};

class NotingSurface final : public GlSurface {
 public:
  explicit NotingSurface(Notes& notes) : notes_(notes) {}
  bool makeCurrent() override {
    bool there = false;
    notes_.note([&] {
      ++notes_.madeCurrent;
      there = notes_.contextThere;
    });
    return there;
  }
  bool takeContextLoss() override {
    const std::lock_guard lock(notes_.mutex);
    return std::exchange(notes_.contextLost, false);
  }
  void doneCurrent() override {
    notes_.note([&] { ++notes_.doneCurrent; });
  }
  void swapBuffers() override {
    notes_.note([&] { ++notes_.swaps; });
  }
  [[nodiscard]] SizePx sizePx() const override {
    const std::lock_guard lock(notes_.mutex);
    return notes_.size;
  }
  [[nodiscard]] Seconds refreshInterval() const override { return Seconds{0.001}; }
  [[nodiscard]] bool drawable() const override {
    const std::lock_guard lock(notes_.mutex);
    return notes_.drawable;
  }

 private:
  Notes& notes_;
};

class NotingPainter final : public Painter {
 public:
  explicit NotingPainter(Notes& notes) : notes_(notes) {
    notes_.note([&] {
      if (notes_.painterThrows) throw std::runtime_error("no shaders today");
      ++notes_.paintersMade;
      ++notes_.paintersAlive;
    });
  }
  ~NotingPainter() override {
    notes_.note([&] { --notes_.paintersAlive; });
  }
  void want(std::span<const WantedTexture>) override {}
  UploadProgress upload(Nanoseconds budget) override {
    UploadProgress progress;
    notes_.note([&] {
      ++notes_.uploads;
      notes_.budgets.push_back(budget);
      progress.sent = notes_.uploadsPending > 0;
      if (notes_.uploadsPending > 0) --notes_.uploadsPending;
      progress.pending = notes_.uploadsPending > 0;
      progress.shownBetter = notes_.uploadsPending == 1;
    });
    return progress;
  }
  void draw(const DrawList& list, SizePx) override {
    notes_.note([&] {
      if (notes_.drawThrows) throw std::runtime_error("drawing broke");
      notes_.drawn.push_back(list);
    });
  }
  [[nodiscard]] std::optional<std::string> failure() override {
    const std::lock_guard lock(notes_.mutex);
    return notes_.failure;
  }
  void abandon() override {
    notes_.note([&] { ++notes_.abandoned; });
  }

 private:
  Notes& notes_;
};

// Keeps what it is told, under the notes' lock.
class NotingWatcher final : public FrameWatcher {
 public:
  explicit NotingWatcher(Notes& notes) : notes_(notes) {}
  void frameShown(const ShownFrame& frame) override {
    notes_.note([&] { frames.push_back(frame); });
  }
  std::vector<ShownFrame> frames;

 private:
  Notes& notes_;
};

class RenderThreadTest : public testing::Test {
 protected:
  RenderThreadTest() {
    root.edit([](LayerProperties& p) { p.bounds = {{0, 0}, kScreen}; });
  }
  void start() {
    const auto makePainter = [this] { return std::make_unique<NotingPainter>(notes); };
    thread = std::make_unique<RenderThread>(surface, clock, log, makePainter, &watcher);
  }
  void publish() { thread->publish(makeFrameSnapshot(root, kScreen, 1)); }
  bool waitForSwaps(int count) {
    return notes.waitUntil([&] { return notes.swaps >= count; });
  }
  // Publishes a tree that can be told from others, and waits until it has been drawn: then all before is over.
  bool drawMarked(double mark) {
    root.edit([&](LayerProperties& p) { p.backgroundColor = {static_cast<float>(mark), 0, 0, 1}; });
    publish();
    return notes.waitUntil([&] {
      if (notes.drawn.empty() || notes.drawn.back().quads.empty()) return false;
      const auto* ground = std::get_if<ColorQuad>(&notes.drawn.back().quads[0]);
      return ground != nullptr && ground->color.red == static_cast<float>(mark);
    });
  }

  Notes notes;
  NotingSurface surface{notes};
  NotingWatcher watcher{notes};
  SteppingClock clock;
  RecordingLog log;
  Layer root;
  std::unique_ptr<RenderThread> thread;  // first to go
};

TEST_F(RenderThreadTest, touchesNothingBeforeItIsExposed) {
  start();
  publish();
  thread.reset();
  EXPECT_EQ(notes.madeCurrent, 0);
  EXPECT_EQ(notes.doneCurrent, 0);
  EXPECT_EQ(notes.paintersAlive, 0);
}

TEST_F(RenderThreadTest, drawsThePublishedTreeAndGivesTheContextBack) {
  start();
  thread->setExposed(true);
  EXPECT_TRUE(drawMarked(0.5));
  thread.reset();
  EXPECT_GE(notes.swaps, 1);
  EXPECT_EQ(notes.doneCurrent, 1);
  EXPECT_EQ(notes.paintersAlive, 0);
  EXPECT_EQ(notes.abandoned, 0);
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(RenderThreadTest, tellsOfEveryFrameThatIsShown) {
  start();
  thread->setExposed(true);
  ASSERT_TRUE(drawMarked(0.25));
  ASSERT_TRUE(drawMarked(0.5));
  thread.reset();
  ASSERT_EQ(watcher.frames.size(), static_cast<std::size_t>(notes.swaps));
  MediaTime last{};
  for (const ShownFrame& frame : watcher.frames) {
    EXPECT_GT(frame.begun, last);
    EXPECT_GT(frame.shown, frame.begun);
    EXPECT_EQ(frame.refreshInterval, Seconds{0.001});
    EXPECT_FALSE(frame.moving);
    EXPECT_EQ(frame.longestUpload, Nanoseconds{});
    last = frame.shown;
  }
}

TEST_F(RenderThreadTest, tellsHowLongTexturesWereSentBetweenFrames) {
  notes.uploadsPending = 3;
  start();
  thread->setExposed(true);
  ASSERT_TRUE(drawMarked(0.5));
  ASSERT_TRUE(notes.waitUntil([&] { return notes.uploadsPending == 0; }));
  ASSERT_TRUE(drawMarked(0.75));
  thread.reset();
  const auto sending = std::ranges::count_if(
      watcher.frames, [](const ShownFrame& frame) { return frame.longestUpload > Nanoseconds{}; });
  EXPECT_GE(sending, 2);  // the first frame, and the one that shows what was sent after it
  EXPECT_EQ(watcher.frames.back().longestUpload, Nanoseconds{});
}

TEST_F(RenderThreadTest, aStillTreeIsDrawnOnce) {
  start();
  thread->setExposed(true);
  ASSERT_TRUE(drawMarked(0.25));
  ASSERT_TRUE(drawMarked(0.5));
  ASSERT_TRUE(drawMarked(0.75));
  thread.reset();
  EXPECT_LE(notes.swaps, 3);  // the exposure itself may come together with the first tree
}

TEST_F(RenderThreadTest, drawsUntilTheMotionHasEndedAndThenSleeps) {
  BasicAnimation fade;
  fade.from = 0.0;
  fade.to = 1.0;
  fade.duration = Seconds{1};
  fade.timing = TimingCurve::Linear;
  fade.beginTime = Seconds{0};
  fade.fillMode = FillMode::Forwards;
  fade.removedOnCompletion = false;
  root.addAnimation(fade, "fade", Seconds{0});
  root.edit([](LayerProperties& p) { p.backgroundColor = {1, 1, 1, 1}; });
  start();
  thread->setExposed(true);
  publish();
  // The last frame shows the end, fully there.
  ASSERT_TRUE(notes.waitUntil([&] {
    return !notes.drawn.empty() && !notes.drawn.back().quads.empty() &&
           std::get<ColorQuad>(notes.drawn.back().quads[0]).opacity == 1;
  }));
  thread.reset();
  EXPECT_GE(notes.drawn.size(), 5U);  // in between it moved
  double last = 0;
  int atTheEnd = 0;
  for (const DrawList& list : notes.drawn) {
    if (list.quads.empty()) continue;
    const double opacity = std::get<ColorQuad>(list.quads[0]).opacity;
    EXPECT_GE(opacity, last);
    last = opacity;
    atTheEnd += opacity == 1 ? 1 : 0;
  }
  EXPECT_EQ(atTheEnd, 1);
}

TEST_F(RenderThreadTest, aNewTreeIsTakenUpInMidMotion) {
  root.addSublayer(plainPictureLayer(makeBitmap({4, 4}), kScreen))
      ->addAnimation(swinging(KeyPath::BoundsSize, SizePt{1, 1}, SizePt{2, 2}, 1), "zoom", Seconds{0});
  start();
  thread->setExposed(true);
  publish();
  ASSERT_TRUE(waitForSwaps(3));
  EXPECT_TRUE(drawMarked(0.5));
  EXPECT_TRUE(waitForSwaps(6));
}

TEST_F(RenderThreadTest, drawsNothingWhileCovered) {
  root.addSublayer(plainPictureLayer(makeBitmap({4, 4}), kScreen))
      ->addAnimation(swinging(KeyPath::BoundsSize, SizePt{1, 1}, SizePt{2, 2}, 1), "zoom", Seconds{0});
  start();
  thread->setExposed(true);
  publish();
  ASSERT_TRUE(waitForSwaps(3));
  thread->setExposed(false);
  const int swaps = notes.swaps;
  const int current = notes.madeCurrent;
  publish();
  publish();
  thread->setExposed(false);
  EXPECT_EQ(notes.swaps, swaps);
  EXPECT_EQ(notes.madeCurrent, current);
  thread->setExposed(true);
  EXPECT_TRUE(waitForSwaps(swaps + 1));
}

TEST_F(RenderThreadTest, exposureDrawsAStillTreeAgain) {
  start();
  thread->setExposed(true);
  ASSERT_TRUE(drawMarked(0.5));
  ASSERT_TRUE(notes.waitUntil([&] { return notes.swaps >= 1; }));
  const auto drawn = notes.drawn.size();
  thread->setExposed(true);
  EXPECT_TRUE(notes.waitUntil([&] { return notes.drawn.size() > drawn; }));
}

TEST_F(RenderThreadTest, uploadsGoOnWithoutDrawingUntilSomethingShownGetsBetter) {
  notes.uploadsPending = 6;
  start();
  publish();
  thread->setExposed(true);
  ASSERT_TRUE(notes.waitUntil([&] { return notes.uploadsPending == 0 && notes.uploads >= 6; }));
  thread.reset();
  EXPECT_LE(notes.swaps, 3);
  EXPECT_GE(notes.swaps, 2);
}

TEST_F(RenderThreadTest, uploadsAreShortWhileSomethingMoves) {
  notes.uploadsPending = 1000;
  root.addSublayer(plainPictureLayer(makeBitmap({4, 4}), kScreen))
      ->addAnimation(swinging(KeyPath::BoundsSize, SizePt{1, 1}, SizePt{2, 2}, 1), "zoom", Seconds{0});
  start();
  publish();
  thread->setExposed(true);
  ASSERT_TRUE(waitForSwaps(5));
  thread.reset();
  for (const Nanoseconds budget : notes.budgets) EXPECT_EQ(budget, milliseconds{4});
}

TEST_F(RenderThreadTest, failuresAreLoggedOnceAndDoNotStopTheShow) {
  notes.failure = "GL error 0x0505";
  start();
  thread->setExposed(true);
  ASSERT_TRUE(drawMarked(0.25));
  ASSERT_TRUE(drawMarked(0.5));
  ASSERT_TRUE(drawMarked(0.75));
  thread.reset();
  EXPECT_EQ(log.entries().size(), 1U);
  EXPECT_TRUE(log.has("Drawing failed: GL error 0x0505", LogLevel::Error));
}

TEST_F(RenderThreadTest, aPainterThatCannotBeMadeIsTriedAgainWithTheNextTree) {
  notes.painterThrows = true;
  start();
  publish();
  thread->setExposed(true);
  ASSERT_TRUE(notes.waitUntil([&] { return notes.madeCurrent >= 1; }));
  thread->setExposed(false);  // the frame is over
  EXPECT_TRUE(log.has("Drawing failed: no shaders today", LogLevel::Error));
  notes.note([&] { notes.painterThrows = false; });
  thread->setExposed(true);
  EXPECT_TRUE(drawMarked(0.5));
}

TEST_F(RenderThreadTest, anExceptionWhileDrawingDoesNotEndTheThread) {
  notes.drawThrows = true;
  start();
  publish();
  thread->setExposed(true);
  ASSERT_TRUE(notes.waitUntil([&] { return notes.uploads >= 1; }));
  thread->setExposed(false);
  notes.note([&] { notes.drawThrows = false; });
  thread->setExposed(true);
  EXPECT_TRUE(drawMarked(0.5));
}

TEST_F(RenderThreadTest, aContextThatComesLaterIsFound) {
  notes.contextThere = false;
  start();
  publish();
  thread->setExposed(true);
  ASSERT_TRUE(notes.waitUntil([&] { return notes.madeCurrent >= 1; }));
  notes.note([&] { notes.contextThere = true; });
  EXPECT_TRUE(waitForSwaps(1));
}

TEST_F(RenderThreadTest, withoutContextNothingIsGivenBack) {
  notes.contextThere = false;
  start();
  publish();
  thread->setExposed(true);
  ASSERT_TRUE(notes.waitUntil([&] { return notes.madeCurrent >= 1; }));
  thread.reset();
  EXPECT_EQ(notes.doneCurrent, 0);
  EXPECT_EQ(log.entries().size(), 1U);
}

TEST_F(RenderThreadTest, aLostContextIsNotTouchedAnyMore) {
  start();
  thread->setExposed(true);
  ASSERT_TRUE(drawMarked(0.5));
  notes.note([&] { notes.contextThere = false; });
  thread.reset();
  EXPECT_EQ(notes.abandoned, 1);
  EXPECT_EQ(notes.paintersAlive, 0);
}

TEST_F(RenderThreadTest, inPlaceOfALostContextEverythingIsMadeAnew) {
  start();
  thread->setExposed(true);
  ASSERT_TRUE(drawMarked(0.5));
  notes.note([&] { notes.contextLost = true; });
  ASSERT_TRUE(drawMarked(0.75));
  thread.reset();
  EXPECT_EQ(notes.abandoned, 1);
  EXPECT_EQ(notes.paintersMade, 2);
  EXPECT_EQ(notes.paintersAlive, 0);
  EXPECT_EQ(log.entries().size(), 1U);
}

TEST_F(RenderThreadTest, aContextLostAtTheEndIsNotTouchedAnyMore) {
  start();
  thread->setExposed(true);
  ASSERT_TRUE(drawMarked(0.5));
  notes.note([&] { notes.contextLost = true; });
  thread.reset();
  EXPECT_EQ(notes.abandoned, 1);
  EXPECT_EQ(notes.paintersAlive, 0);
}

TEST_F(RenderThreadTest, motionGoesOnAfterAnExceptionWithoutANewTree) {
  root.addSublayer(plainPictureLayer(makeBitmap({4, 4}), kScreen))
      ->addAnimation(swinging(KeyPath::BoundsSize, SizePt{1, 1}, SizePt{2, 2}, 1), "zoom", Seconds{0});
  notes.drawThrows = true;
  start();
  publish();
  thread->setExposed(true);
  ASSERT_TRUE(notes.waitUntil([&] { return notes.uploads >= 1; }));
  notes.note([&] { notes.drawThrows = false; });
  EXPECT_TRUE(waitForSwaps(3));
}

TEST_F(RenderThreadTest, aSurfaceOfUnknownSizeIsLeftAloneUntilItIsKnown) {
  notes.size = {0, 0};
  start();
  publish();
  thread->setExposed(true);
  thread->setExposed(false);
  EXPECT_EQ(notes.madeCurrent, 0);
  thread->setExposed(true);
  notes.note([&] { notes.size = {320, 180}; });
  EXPECT_TRUE(waitForSwaps(1));
}

TEST_F(RenderThreadTest, aSurfaceThatCannotBeDrawnToIsLeftAlone) {
  notes.drawable = false;
  start();
  publish();
  thread->setExposed(true);
  thread->setExposed(false);
  EXPECT_EQ(notes.madeCurrent, 0);
  notes.note([&] { notes.drawable = true; });
  thread->setExposed(true);
  EXPECT_TRUE(waitForSwaps(1));
}

}  // namespace
}  // namespace lumivane

// The thread with a real renderer on a context of its own.
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "compositor/render/RenderThread.h"
#include "tests/support/LayerScenes.h"
#include "tests/support/OffscreenGl.h"
#include "tests/support/RealClock.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

// Reads back what each frame would have shown.
class WatchedSurface final : public GlSurface {
 public:
  bool makeCurrent() override { return gl_.makeCurrent(); }
  void doneCurrent() override { gl_.doneCurrent(); }
  void swapBuffers() override {
    const Rgba middle = gl_.read().at(32, 18);
    const std::lock_guard lock(mutex_);
    middle_ = middle;
    changed_.notify_all();
  }
  [[nodiscard]] SizePx sizePx() const override { return gl_.sizePx(); }
  [[nodiscard]] Seconds refreshInterval() const override { return Seconds{1.0 / 60}; }
  [[nodiscard]] bool drawable() const override { return true; }

  bool waitForMiddle(Rgba color) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds{30}, [&] { return middle_ == color; });
  }

 private:
  OffscreenGl gl_{{64, 36}};
  std::mutex mutex_;
  std::condition_variable changed_;
  Rgba middle_;  // guarded by mutex_
};

TEST(RenderThreadGl, showsOnePictureAfterAnotherThroughAFade) {
  if (!OffscreenGl::available()) GTEST_SKIP() << "no EGL without a window system here";
  const SizePt screen{64, 36};
  const RealClock clock;
  RecordingLog log;
  WatchedSurface surface;
  Layer root;
  Layer* old = root.addSublayer(plainPictureLayer(makeBitmap({64, 36}, Rgba{200, 0, 0, 255}), screen));
  {
    RenderThread thread(surface, clock, log);
    thread.setExposed(true);
    thread.publish(makeFrameSnapshot(root, screen, 1));
    EXPECT_TRUE(surface.waitForMiddle({200, 0, 0, 255}));

    Layer* fresh = root.addSublayer(plainPictureLayer(makeBitmap({64, 36}, Rgba{0, 0, 200, 255}), screen));
    const Seconds now = mediaSeconds(clock.now());
    addFade(*fresh, 0.15, 0, 1, now);
    addFade(*old, 0.1, 1, 0, now);
    thread.publish(makeFrameSnapshot(root, screen, 1));
    EXPECT_TRUE(surface.waitForMiddle({0, 0, 200, 255}));
  }
  EXPECT_TRUE(log.entries().empty());
}

}  // namespace
}  // namespace lumivane

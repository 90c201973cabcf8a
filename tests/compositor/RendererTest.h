// What the tests of the renderer share: a context, a renderer, and a tree to be drawn at a time.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "compositor/model/Evaluation.h"
#include "compositor/render/Renderer.h"
#include "tests/support/LayerScenes.h"
#include "tests/support/OffscreenGl.h"
#include "tests/support/RealClock.h"

namespace lumivane {

inline constexpr SizePx kFramebuffer{320, 180};
inline constexpr SizePt kViewport{320, 180};

class RendererTest : public testing::Test {
 protected:
  explicit RendererTest(SizePx framebuffer = kFramebuffer, GlKind kind = GlKind::Desktop)
      : gl(framebuffer, kind) {}

  void SetUp() override {
    if (!gl.makeCurrent()) GTEST_SKIP() << "no EGL without a window system here";
    renderer = std::make_unique<Renderer>(clock);
    root.edit([](LayerProperties& p) { p.bounds = {{0, 0}, kViewport}; });
  }

  // Draws the tree as it is to be seen at a time, with every texture in place, and reads it back.
  ReadBack drawAt(double seconds) {
    const DrawList list = evaluate(*makeFrameSnapshot(root, kViewport, 1), Seconds{seconds});
    return draw(list);
  }
  ReadBack draw(const DrawList& list) {
    renderer->want(list.wanted);
    while (renderer->upload(Nanoseconds{0}).pending) {
    }
    renderer->draw(list, gl.sizePx());
    const ReadBack pixels = gl.read();
    EXPECT_EQ(renderer->failure(), std::nullopt);
    return pixels;
  }

  RealClock clock;
  OffscreenGl gl;
  std::unique_ptr<Renderer> renderer;  // goes before its context
  Layer root;
};

}  // namespace lumivane

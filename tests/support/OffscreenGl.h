// A GL context without any window system, drawing to a framebuffer of its own: what golden-image tests run on.
//
// Threads: the one that calls makeCurrent() first.
// Owns:    the context and its framebuffer.
// Units:   pixels.
// Errors:  makeCurrent() says false where EGL cannot do it; tests ask available() first and skip.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "compositor/render/GlSurface.h"
#include "tests/support/TestBitmaps.h"

namespace lumivane {

enum class GlKind { Desktop, Embedded };

// Pixels read back, rows from the top.
struct ReadBack {
  SizePx size;
  std::vector<std::uint8_t> bytes;  // red green blue alpha
  [[nodiscard]] Rgba at(int x, int y) const {
    const auto place = static_cast<std::size_t>((y * size.width + x) * 4);
    return {bytes[place], bytes[place + 1], bytes[place + 2], bytes[place + 3]};
  }
};

class OffscreenGl final : public GlSurface {
 public:
  // Whether such a context can be had here at all.
  [[nodiscard]] static bool available(GlKind kind = GlKind::Desktop);

  explicit OffscreenGl(SizePx size, GlKind kind = GlKind::Desktop);
  ~OffscreenGl() override;

  bool makeCurrent() override;
  void doneCurrent() override;
  void swapBuffers() override { ++swaps_; }
  [[nodiscard]] SizePx sizePx() const override { return size_; }
  [[nodiscard]] Seconds refreshInterval() const override { return Seconds{1.0 / 60}; }
  [[nodiscard]] bool drawable() const override { return true; }

  // Requires: current.
  [[nodiscard]] ReadBack read() const;
  [[nodiscard]] int swaps() const { return swaps_; }

 private:
  bool createContext();
  void createFramebuffer();

  SizePx size_;
  GlKind kind_;
  void* display_ = nullptr;
  void* context_ = nullptr;
  unsigned framebuffer_ = 0;
  unsigned color_ = 0;
  std::atomic<int> swaps_ = 0;
};

}  // namespace lumivane

// What the render thread needs to know of the window, kept where both threads may look.
//
// Threads: written on the main thread, read on any.
// Units:   pixels; nanoseconds.
// Errors:  none.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/Clock.h"
#include "platform/Geometry.h"

namespace lumivane {

class WindowSurfaceState {
 public:
  void setSizePx(SizePx size) { packedSize_.store(packed(size), std::memory_order_relaxed); }
  [[nodiscard]] SizePx sizePx() const {
    const std::uint64_t both = packedSize_.load(std::memory_order_relaxed);
    return {static_cast<int>(both >> 32), static_cast<int>(both & 0xFFFFFFFFU)};
  }

  void setRefreshInterval(Nanoseconds interval) {
    refreshInterval_.store(interval.count(), std::memory_order_relaxed);
  }
  [[nodiscard]] Nanoseconds refreshInterval() const {
    return Nanoseconds(refreshInterval_.load(std::memory_order_relaxed));
  }

  // Whether there is a native window to draw to.
  void setDrawable(bool drawable) { drawable_.store(drawable, std::memory_order_release); }
  [[nodiscard]] bool drawable() const { return drawable_.load(std::memory_order_acquire); }

 private:
  // Both in one, so that a width never goes with another size's height.
  static std::uint64_t packed(SizePx size) {
    return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(size.width)) << 32) |
           static_cast<std::uint32_t>(size.height);
  }

  std::atomic<std::uint64_t> packedSize_{0};
  std::atomic<Nanoseconds::rep> refreshInterval_{16'666'667};
  std::atomic<bool> drawable_{false};
};

}  // namespace lumivane

// Lends the large buffers that pictures are decoded into, and keeps a few of them for the next picture.
//
// The first touch of fresh memory costs a third of a JPEG decode, so a buffer that comes back is kept and lent
// again to a picture of about the same size.
//
// Threads: any; buffers may be dropped on any thread.
// Owns:    the idle buffers. A lent buffer outlives the pool if it must and is then simply freed.
// Units:   bytes.
// Errors:  take() hands out an empty buffer when there is no memory.
#pragma once

#include <cstddef>
#include <memory>

#include "compositor/model/Bitmap.h"
#include "imaging/PixelSizeClass.h"
#include "imaging/decode/PixelSource.h"

namespace lumivane {

class PixelPool final : public PixelSource {
 public:
  // What the pool may hold back while nobody uses it. The oldest buffers go first.
  struct Limits {
    std::size_t idleBuffers = 3;
    std::size_t idleBytes = std::size_t{512} << 20;
  };

  explicit PixelPool(Limits limits);
  PixelPool() : PixelPool(Limits{}) {}

  [[nodiscard]] PixelBuffer take(std::size_t bytes) override;

  // Frees what is idle, for when memory is short.
  void trim();

  [[nodiscard]] std::size_t idleBuffers() const;
  [[nodiscard]] std::size_t idleBytes() const;

 private:
  class Shelf;
  std::shared_ptr<Shelf> shelf_;
};

}  // namespace lumivane

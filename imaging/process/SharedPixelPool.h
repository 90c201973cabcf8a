// Lends the memory that pictures are decoded into by another process, and keeps a few pieces for the next picture.
//
// A piece keeps its number and its place as long as it exists, so that both sides map it once and never touch fresh
// memory twice.
//
// Threads: any; buffers may be dropped on any thread.
// Owns:    the idle pieces. A lent one outlives the pool if it must and is then simply freed.
// Units:   bytes.
// Errors:  take() hands out nothing when there is no memory.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "compositor/model/Bitmap.h"
#include "imaging/process/DecoderProtocol.h"
#include "platform/SharedMemory.h"

namespace lumivane {

// A piece of the pool. One that is dropped on the way to a picture is freed and not lent again: a process that went
// wrong may still write into it.
struct SharedPixels {
  PixelBufferNumber number = 0;
  std::shared_ptr<const SharedMemory> memory;
};

class SharedPixelPool {
 public:
  // What the pool may hold back while nobody uses it. The oldest pieces go first.
  struct Limits {
    std::size_t idleBuffers = 3;
    std::size_t idleBytes = std::size_t{512} << 20;
  };
  SharedPixelPool(SharedMemories& memories, Limits limits);

  // A piece of at least this many bytes.
  [[nodiscard]] std::optional<SharedPixels> take(std::size_t bytes);

  // The piece as the memory of a picture, for reading only; when the picture is dropped, the piece waits for the next.
  [[nodiscard]] PixelBuffer pictureIn(SharedPixels pixels);

  // Those of `numbers` whose pieces exist no more.
  [[nodiscard]] std::vector<PixelBufferNumber> goneOf(std::span<const PixelBufferNumber> numbers) const;

  [[nodiscard]] std::size_t idleBuffers() const;

 private:
  class Shelf;
  SharedMemories& memories_;
  const std::shared_ptr<Shelf> shelf_;
};

}  // namespace lumivane

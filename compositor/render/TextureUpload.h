// One texture on its way to the GPU: filled level by level, the small ones first, in slices that take little time.
//
// Threads: render only.
// Owns:    its texture; shares the bitmap until the last slice has gone.
// Units:   levels are those of the bitmap, 0 = full size; slices of about kSliceBytes.
// Errors:  none; what the GL refuses shows as a GL error.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "compositor/model/Bitmap.h"
#include "compositor/model/BitmapRows.h"
#include "compositor/render/GlName.h"

namespace lumivane {

// The storage of a texture: textures of equal storage can take each other's place.
struct TextureStorage {
  SizePx size;
  int levels = 0;
  bool operator==(const TextureStorage&) const = default;
};

class TextureUpload {
 public:
  // Large enough that calls do not count, small enough to end within a fraction of a frame.
  static constexpr std::size_t kSliceBytes = 512 * 1024;

  // Requires: `mostDetailed` is one of the bitmap's levels and no larger than the GL allows.
  // `recycled`: a texture of the same storage that nobody needs any more, or none. Making storage is by far the
  // longest step where the GPU is the processor itself (a fresh 24 MB takes 20 ms), using it again costs nothing.
  TextureUpload(BitmapRef bitmap, std::size_t mostDetailed, GlName recycled);

  [[nodiscard]] static TextureStorage storageFor(const Bitmap& bitmap, std::size_t mostDetailed);

  // Sends one slice. Several small levels go in one.
  void step();

  [[nodiscard]] bool done() const { return !bitmap_; }
  // Whether there is a level to be drawn with.
  [[nodiscard]] bool usable() const { return finest_ < levelCount_; }
  // The most detailed level that is complete. Requires: usable().
  [[nodiscard]] std::size_t finestLevel() const { return finest_; }
  [[nodiscard]] std::size_t mostDetailedLevel() const { return mostDetailed_; }
  [[nodiscard]] GLuint texture() const { return texture_.get(); }
  [[nodiscard]] const TextureStorage& storage() const { return storage_; }

  [[nodiscard]] GlName release() { return std::move(texture_); }
  void abandon() { texture_.abandon(); }

 private:
  // Sends rows of the level being sent; returns the bytes sent.
  std::size_t sendRows(std::size_t most);
  void levelComplete();

  BitmapRef bitmap_;  // nullptr once done, as is the next
  std::optional<BitmapRows> rows_;
  std::size_t mostDetailed_;
  std::size_t levelCount_;
  TextureStorage storage_;
  GlName texture_;
  std::size_t finest_;  // levelCount_ = none is complete yet
  int row_ = 0;         // of the level below finest_, the next to be sent
};

}  // namespace lumivane

// The one place where the next picture waits, decoded ahead of time.
//
// Threads: main only; the prefetch queue hands its result over through the main loop.
// Owns:    the next picture until the frame loop takes it.
// Units:   positions in the picture list.
// Errors:  `failed` tells that the last prefetch gave up after its tries.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "compositor/model/Bitmap.h"
#include "engine/ImageOrder.h"
#include "imaging/PictureLoading.h"

namespace lumivane {

// How many pictures in a row a prefetch tries before it gives up.
inline constexpr int kPrefetchTries = 5;

struct PrefetchSlot {
  BitmapRef prefetched_image_;  // nullptr = empty
  std::shared_ptr<const PropertyDictionary> prefetch_image_props_;
  ImageIndex prefetch_img_index_ = 0;  // of the picture in the slot, or of the last one tried
  bool prefetchNextImageRunning_ = false;
  bool prefetchNextImageFailed_ = false;

  // Counts requests, so that of several waiting ones only the newest runs: a picture drawn by an older one would
  // be lost from this pass.
  std::uint64_t request = 0;

  [[nodiscard]] bool full() const { return prefetched_image_ != nullptr; }
  // Drops the picture, whatever a running prefetch still brings.
  void empty() { prefetched_image_.reset(); }
  void fill(LoadedPicture picture) {
    prefetched_image_ = std::move(picture.image);
    prefetch_image_props_ = std::make_shared<const PropertyDictionary>(std::move(picture.properties));
  }
};

}  // namespace lumivane

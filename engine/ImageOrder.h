// Which picture comes next: random without repetition, or in the order of the list.
//
// Threads: main only.
// Owns:    the numbers of the pictures not yet shown in this pass.
// Units:   positions in the picture list, from 0.
// Errors:  a number beyond the list (it shrank meanwhile) is logged and replaced by a free draw.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Log.h"
#include "platform/RandomSource.h"

namespace lumivane {

using ImageIndex = std::uint64_t;
using IndexList = std::vector<std::uint32_t>;

// The numbers 0, 1, ..., count - 1.
[[nodiscard]] IndexList makeIndexList(std::size_t count);

// A uniform draw from 0 to count - 1. Requires: count > 0.
[[nodiscard]] std::size_t randomPosition(RandomSource& random, std::size_t count);

class ImageOrder {
 public:
  ImageOrder(RandomSource& random, Log& log) : random_(random), log_(log) {}

  // Starts a pass over a list of so many pictures.
  void refill(std::size_t imageCount) { imagesNotYetShown_ = makeIndexList(imageCount); }
  // Takes one picture out of this pass, because it was deleted. Later numbers are not shifted.
  void forget(ImageIndex index);

  // The position after `index` in list order, going round at the end. Requires: imageCount > 0.
  [[nodiscard]] static ImageIndex nextInListOrder(ImageIndex index, std::size_t imageCount);

  // The next position of this pass; absent when the pass is complete (or none was begun): the caller says so
  // on the screen, refills and asks again. Requires: imageCount > 0.
  [[nodiscard]] std::optional<ImageIndex> nextAtRandom(std::size_t imageCount);

  [[nodiscard]] const IndexList& imagesNotYetShown() const { return imagesNotYetShown_; }

 private:
  RandomSource& random_;
  Log& log_;
  IndexList imagesNotYetShown_;
};

}  // namespace lumivane

#include "engine/ImageOrder.h"

#include <algorithm>
#include <numeric>
#include <string>

namespace lumivane {

IndexList makeIndexList(std::size_t count) {
  IndexList list(count);
  std::iota(list.begin(), list.end(), 0U);
  return list;
}

std::size_t randomPosition(RandomSource& random, std::size_t count) {
  return random.random() % count;
}

void ImageOrder::forget(ImageIndex index) {
  std::erase_if(imagesNotYetShown_, [index](std::uint32_t number) { return number == index; });
}

ImageIndex ImageOrder::nextInListOrder(ImageIndex index, std::size_t imageCount) {
  return index + 1 < imageCount ? index + 1 : 0;
}

std::optional<ImageIndex> ImageOrder::nextAtRandom(std::size_t imageCount) {
  if (imagesNotYetShown_.empty()) return std::nullopt;
  const std::size_t position = randomPosition(random_, imagesNotYetShown_.size());
  const std::uint32_t number = imagesNotYetShown_[position];
  if (number >= imageCount) {
    log_.error("img_index (" + std::to_string(number) + ") > num image files (" + std::to_string(imageCount) +
               ")!");
    return randomPosition(random_, imageCount);
  }
  imagesNotYetShown_.erase(imagesNotYetShown_.begin() + static_cast<std::ptrdiff_t>(position));
  return number;
}

}  // namespace lumivane

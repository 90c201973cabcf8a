#include "compositor/model/BitmapRows.h"

namespace lumivane {
namespace {

constexpr std::size_t kBytesPerPixel = 4;

}  // namespace

BitmapRows::BitmapRows(const Bitmap& bitmap) : bitmap_(bitmap) {
  if (bitmap_.planes()) planes_.emplace(*bitmap_.planes(), bitmap_.bytes());
}

RgbaRows BitmapRows::read(std::size_t level, int first, int count) {
  const BitmapLevel& place = bitmap_.levels()[level];
  if (bitmap_.isStored(level)) {
    return {bitmap_.levelBytes(level).data() + static_cast<std::size_t>(first) * place.strideBytes,
            place.strideBytes};
  }
  const std::size_t stride = static_cast<std::size_t>(place.size.width) * kBytesPerPixel;
  const std::size_t bytes = stride * static_cast<std::size_t>(count);
  if (made_.size() < bytes) made_.resize(bytes);
  for (int i = 0; i < count; ++i)
    planes_->make(level, first + i, made_.data() + static_cast<std::size_t>(i) * stride);
  return {made_.data(), stride};
}

}  // namespace lumivane

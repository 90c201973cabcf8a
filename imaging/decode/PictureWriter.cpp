#include "imaging/decode/PictureWriter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "imaging/decode/MipChain.h"

namespace lumivane {

SizePx fittingSize(SizePx size, int maxPixelSize) {
  const int longer = std::max(size.width, size.height);
  if (longer <= maxPixelSize) return size;
  const double scale = static_cast<double>(maxPixelSize) / longer;
  const auto scaled = [scale](int side) { return std::max(1, static_cast<int>(std::lround(side * scale))); };
  return {scaled(size.width), scaled(size.height)};
}

std::optional<PictureWriter> PictureWriter::make(PixelSource& pool, SizePx source, SizePx target) {
  PixelBuffer pixels = pool.take(packedLevelsBytes(target));
  if (pixels.bytes().empty()) return std::nullopt;
  return PictureWriter(std::move(pixels), packedLevels(target), source);
}

PictureWriter::PictureWriter(PixelBuffer pixels, std::vector<BitmapLevel> levels, SizePx source)
    : pixels_(std::move(pixels)), levels_(std::move(levels)), source_(source) {
  const BitmapLevel full = levels_.front();
  if (full.size == source) {
    strideBytes_ = full.strideBytes;
    return;
  }
  strideBytes_ = static_cast<std::size_t>(source.width) * 4;
  scratch_.resize(strideBytes_ * kRowsAtOnce);
  auto* first = reinterpret_cast<std::uint8_t*>(pixels_.bytes().data()) + full.offsetBytes;
  shrinker_.emplace(source, full.size,
                    [first, full](int y) { return first + static_cast<std::size_t>(y) * full.strideBytes; });
}

std::uint8_t* PictureWriter::rows() {
  if (shrinker_) return scratch_.data();
  const BitmapLevel& full = levels_.front();
  auto* first = reinterpret_cast<std::uint8_t*>(pixels_.bytes().data()) + full.offsetBytes;
  return first + static_cast<std::size_t>(rowsDone_) * strideBytes_;
}

void PictureWriter::commit(int count) {
  rowsDone_ += count;
  if (!shrinker_) return;
  for (int i = 0; i < count; ++i)
    shrinker_->add(scratch_.data() + static_cast<std::size_t>(i) * strideBytes_);
}

BitmapRef PictureWriter::finish(OrientationCode orientation, bool opaque) {
  buildMipChain(pixels_.bytes(), levels_);
  return std::make_shared<const Bitmap>(std::move(pixels_), std::move(levels_), orientation, opaque);
}

}  // namespace lumivane

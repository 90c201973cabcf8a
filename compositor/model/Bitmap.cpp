#include "compositor/model/Bitmap.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <new>
#include <utility>

namespace lumivane {
namespace {

constexpr std::size_t kBytesPerPixel = 4;

// Whether the level lies inside a buffer of so many bytes; the last row needs no padding. Written so that no
// sum or product can wrap around.
[[maybe_unused]] bool fits(const BitmapLevel& level, std::size_t bufferBytes) {
  if (level.size.width < 1 || level.size.height < 1) return false;
  const std::size_t rowBytes = static_cast<std::size_t>(level.size.width) * kBytesPerPixel;
  if (level.strideBytes < rowBytes || level.offsetBytes > bufferBytes) return false;
  const std::size_t room = bufferBytes - level.offsetBytes;
  const std::size_t rowsBefore = static_cast<std::size_t>(level.size.height) - 1;
  return rowBytes <= room && (rowsBefore == 0 || level.strideBytes <= (room - rowBytes) / rowsBefore);
}

[[maybe_unused]] bool isChain(const std::vector<BitmapLevel>& levels, std::size_t bufferBytes) {
  if (levels.empty()) return false;
  for (std::size_t i = 0; i < levels.size(); ++i) {
    if (!fits(levels[i], bufferBytes)) return false;
    if (i > 0 && levels[i].size != halved(levels[i - 1].size)) return false;
  }
  return true;
}

}  // namespace

PixelBuffer::PixelBuffer(std::byte* data, std::size_t bytes, Release release)
    : data_(data), size_(bytes), release_(std::move(release)) {}

PixelBuffer::PixelBuffer(PixelBuffer&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      release_(std::exchange(other.release_, nullptr)) {}

PixelBuffer& PixelBuffer::operator=(PixelBuffer&& other) noexcept {
  if (this == &other) return *this;
  if (release_) release_(data_, size_);
  data_ = std::exchange(other.data_, nullptr);
  size_ = std::exchange(other.size_, 0);
  release_ = std::exchange(other.release_, nullptr);
  return *this;
}

PixelBuffer::~PixelBuffer() {
  if (release_) release_(data_, size_);
}

PixelBuffer PixelBuffer::allocate(std::size_t bytes) {
  auto* data = static_cast<std::byte*>(std::calloc(std::max<std::size_t>(bytes, 1), 1));
  if (data == nullptr) throw std::bad_alloc();
  return {data, bytes, [](std::byte* block, std::size_t) { std::free(block); }};
}

Bitmap::Bitmap(PixelBuffer pixels, std::vector<BitmapLevel> levels, OrientationCode orientation, bool opaque)
    : pixels_(std::move(pixels)), levels_(std::move(levels)), orientation_(orientation), opaque_(opaque) {
  assert(orientation_ >= 1 && orientation_ <= 8);
  assert(isChain(levels_, std::as_const(pixels_).bytes().size()));
}

Bitmap::Bitmap(PixelBuffer pixels, PlanarLayout layout, OrientationCode orientation)
    : pixels_(std::move(pixels)),
      levels_(layout.levels),
      planes_(std::move(layout)),
      orientation_(orientation),
      opaque_(true) {
  assert(orientation_ >= 1 && orientation_ <= 8);
  assert(planes_->bytes <= std::as_const(pixels_).bytes().size());
}

std::span<const std::byte> Bitmap::levelBytes(std::size_t level) const {
  const BitmapLevel& place = levels_.at(level);
  assert(isStored(level));
  const std::size_t length = static_cast<std::size_t>(place.size.height - 1) * place.strideBytes +
                             static_cast<std::size_t>(place.size.width) * kBytesPerPixel;
  return pixels_.bytes().subspan(place.offsetBytes, length);
}

SizePx Bitmap::displaySize() const {
  const SizePx stored = storedSize();
  return orientation_ >= 5 ? SizePx{stored.height, stored.width} : stored;
}

std::vector<BitmapLevel> packedLevels(SizePx fullSize) {
  assert(fullSize.width >= 1 && fullSize.height >= 1);
  std::vector<BitmapLevel> levels;
  std::size_t offset = 0;
  for (SizePx size = fullSize;; size = halved(size)) {
    const std::size_t stride = static_cast<std::size_t>(size.width) * kBytesPerPixel;
    levels.push_back({offset, size, stride});
    offset += stride * static_cast<std::size_t>(size.height);
    if (size.width == 1 && size.height == 1) return levels;
  }
}

std::size_t packedLevelsBytes(SizePx fullSize) {
  const BitmapLevel last = packedLevels(fullSize).back();
  return last.offsetBytes + last.strideBytes;  // the last level has one row
}

}  // namespace lumivane

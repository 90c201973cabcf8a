#include "compositor/render/TextureUpload.h"

#include <algorithm>
#include <utility>

namespace lumivane {
namespace {

constexpr std::size_t kBytesPerPixel = 4;

bool hasImmutableStorage() {
  return !epoxy_is_desktop_gl() || epoxy_gl_version() >= 42 ||
         epoxy_has_gl_extension("GL_ARB_texture_storage");
}

// Room for every level at once: asking level by level makes drivers guess, and copy when they guessed wrong.
void allocate(const TextureStorage& storage) {
  if (hasImmutableStorage()) {
    glTexStorage2D(GL_TEXTURE_2D, storage.levels, GL_RGBA8, storage.size.width, storage.size.height);
    return;
  }
  for (int level = 0; level < storage.levels; ++level) {
    glTexImage2D(GL_TEXTURE_2D, level, GL_RGBA8, std::max(1, storage.size.width >> level),
                 std::max(1, storage.size.height >> level), 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
  }
}

GlName makeTexture(const TextureStorage& storage) {
  GlName texture = GlName::texture();
  glBindTexture(GL_TEXTURE_2D, texture.get());
  allocate(storage);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  return texture;
}

void sendRow(int level, int row, int rows, int width, const std::byte* pixels) {
  glTexSubImage2D(GL_TEXTURE_2D, level, 0, row, width, rows, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

}  // namespace

TextureStorage TextureUpload::storageFor(const Bitmap& bitmap, std::size_t mostDetailed) {
  return {bitmap.levels()[mostDetailed].size, static_cast<int>(bitmap.levels().size() - mostDetailed)};
}

TextureUpload::TextureUpload(BitmapRef bitmap, std::size_t mostDetailed, GlName recycled)
    : bitmap_(std::move(bitmap)),
      rows_(std::in_place, *bitmap_),
      mostDetailed_(mostDetailed),
      levelCount_(bitmap_->levels().size()),
      storage_(storageFor(*bitmap_, mostDetailed)),
      texture_(recycled.get() != 0 ? std::move(recycled) : makeTexture(storage_)),
      finest_(levelCount_) {
  glBindTexture(GL_TEXTURE_2D, texture_.get());
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, storage_.levels - 1);
}

void TextureUpload::step() {
  if (done()) return;
  glBindTexture(GL_TEXTURE_2D, texture_.get());
  std::size_t sent = 0;
  while (!done() && sent < kSliceBytes) sent += sendRows(kSliceBytes - sent);
}

std::size_t TextureUpload::sendRows(std::size_t most) {
  const std::size_t level = finest_ - 1;
  const BitmapLevel& place = bitmap_->levels()[level];
  const std::size_t rowBytes = static_cast<std::size_t>(place.size.width) * kBytesPerPixel;
  const int rows = std::clamp(static_cast<int>(most / rowBytes), 1, place.size.height - row_);
  const int target = static_cast<int>(level - mostDetailed_);
  const RgbaRows pixels = rows_->read(level, row_, rows);
  if (pixels.strideBytes % kBytesPerPixel == 0) {
    glPixelStorei(GL_UNPACK_ROW_LENGTH, static_cast<GLint>(pixels.strideBytes / kBytesPerPixel));
    sendRow(target, row_, rows, place.size.width, pixels.first);
  } else {
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    for (int i = 0; i < rows; ++i) {
      sendRow(target, row_ + i, 1, place.size.width,
              pixels.first + static_cast<std::size_t>(i) * pixels.strideBytes);
    }
  }
  row_ += rows;
  if (row_ == place.size.height) levelComplete();
  return rowBytes * static_cast<std::size_t>(rows);
}

void TextureUpload::levelComplete() {
  row_ = 0;
  --finest_;
  // Only complete levels are sampled, so that a picture shown early looks soft and never wrong.
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_BASE_LEVEL, static_cast<GLint>(finest_ - mostDetailed_));
  if (finest_ != mostDetailed_) return;
  rows_.reset();
  bitmap_.reset();
}

}  // namespace lumivane

#include "compositor/render/TextureStore.h"

#include <algorithm>
#include <utility>

namespace lumivane {
namespace {

bool isPending(const std::unique_ptr<TextureUpload>& upload) {
  return upload && !upload->done();
}

bool isUsable(const std::unique_ptr<TextureUpload>& upload) {
  return upload && upload->usable();
}

}  // namespace

TextureStore::TextureStore(const Clock& clock, int largestSide) : clock_(clock), largestSide_(largestSide) {}

void TextureStore::want(std::span<const WantedTexture> wanted) {
  dropUnwanted(wanted);
  order_.clear();
  for (const WantedTexture& texture : wanted) want(texture);
}

void TextureStore::want(const WantedTexture& texture) {
  const auto levels = texture.bitmap->levels();
  const auto fits = [&](const BitmapLevel& level) {
    return level.size.width <= largestSide_ && level.size.height <= largestSide_;
  };
  const auto first = std::min(texture.mostDetailedLevel, levels.size() - 1);
  const auto level = std::ranges::find_if(levels.subspan(first), fits);
  if (level == levels.subspan(first).end()) return;
  Picture& picture = pictures_[texture.bitmap];
  picture.wantedLevel = first + static_cast<std::size_t>(level - levels.subspan(first).begin());
  picture.shown = texture.shown;
  order_.push_back(&picture);
  if (!picture.current) picture.current = begin(texture.bitmap, picture.wantedLevel);
  const bool larger = picture.wantedLevel < picture.current->mostDetailedLevel();
  const bool enough = picture.larger && picture.larger->mostDetailedLevel() <= picture.wantedLevel;
  if (larger && !enough) picture.larger = begin(texture.bitmap, picture.wantedLevel);
}

std::unique_ptr<TextureUpload> TextureStore::begin(const BitmapRef& bitmap, std::size_t level) {
  GlName recycled;
  if (spare_ && spare_->storage() == TextureUpload::storageFor(*bitmap, level)) recycled = spare_->release();
  spare_.reset();  // of no use to this picture, so it is likely to be of none to the next
  return std::make_unique<TextureUpload>(bitmap, level, std::move(recycled));
}

UploadProgress TextureStore::upload(Nanoseconds budget) {
  UploadProgress progress;
  const MediaTime begun = clock_.now();
  while (uploadSlice(progress) && clock_.now() - begun < budget) {
  }
  progress.pending = mostUrgent() != nullptr;
  return progress;
}

bool TextureStore::uploadSlice(UploadProgress& progress) {
  Picture* picture = mostUrgent();
  if (picture == nullptr) return false;
  auto& upload = isPending(picture->current) ? picture->current : picture->larger;
  const auto finest = [](const TextureUpload& u) { return u.usable() ? u.finestLevel() : std::size_t(-1); };
  const std::size_t before = finest(*picture->current);
  upload->step();
  progress.sent = true;
  if (picture->larger && finest(*picture->larger) < finest(*picture->current)) {
    keepSpare(std::exchange(picture->current, std::move(picture->larger)));
  }
  progress.shownBetter = progress.shownBetter || (picture->shown && finest(*picture->current) < before);
  return true;
}

TextureStore::Picture* TextureStore::mostUrgent() {
  const auto blank = [](const Picture* picture) { return picture->shown && !isUsable(picture->current); };
  const auto pending = [](const Picture* picture) {
    return isPending(picture->current) || isPending(picture->larger);
  };
  auto found = std::ranges::find_if(order_, blank);
  if (found == order_.end()) found = std::ranges::find_if(order_, pending);
  return found == order_.end() ? nullptr : *found;
}

GLuint TextureStore::texture(const BitmapRef& bitmap) const {
  const auto picture = pictures_.find(bitmap);
  if (picture == pictures_.end() || !isUsable(picture->second.current)) return 0;
  return picture->second.current->texture();
}

void TextureStore::dropUnwanted(std::span<const WantedTexture> wanted) {
  for (auto picture = pictures_.begin(); picture != pictures_.end();) {
    const auto same = [&](const WantedTexture& texture) {
      return !picture->first.owner_before(texture.bitmap) && !texture.bitmap.owner_before(picture->first);
    };
    if (std::ranges::any_of(wanted, same)) {
      ++picture;
      continue;
    }
    keepSpare(std::move(picture->second.current));
    picture = pictures_.erase(picture);
  }
}

void TextureStore::keepSpare(std::unique_ptr<TextureUpload> upload) {
  spare_ = std::move(upload);
}

void TextureStore::abandon() {
  if (spare_) spare_->abandon();
  for (auto& [bitmap, picture] : pictures_) {
    if (picture.current) picture.current->abandon();
    if (picture.larger) picture.larger->abandon();
  }
}

}  // namespace lumivane

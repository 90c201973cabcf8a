#include "imaging/decode/HeaderDimensions.h"

#include "imaging/decode/PictureOpening.h"

namespace lumivane {
namespace {

std::optional<SizePx> measureFile(const std::string& path) {
  const auto file = PictureFile::open(path);
  if (!file) return std::nullopt;
  const OpenedPicture picture = openPicture(*file);
  if (!picture.opened.codec) return kNoPicture;
  const SizePx size = picture.opened.codec->header().size;
  return size.width > 0 && size.height > 0 ? size : kNoPicture;
}

}  // namespace

std::vector<std::optional<SizePx>> HeaderDimensions::measure(const std::vector<std::string>& paths) {
  std::vector<std::optional<SizePx>> sizes;
  sizes.reserve(paths.size());
  for (const std::string& path : paths) sizes.push_back(measureFile(path));
  return sizes;
}

}  // namespace lumivane

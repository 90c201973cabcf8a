#include "PeerLoaders.h"

#include <QColorSpace>
#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <cstring>
// After Qt: it brings the macros of X11.
// clang-format off
#include <Imlib2.h>
// clang-format on

namespace lumivane {
namespace {

QImage readWithQt(const std::string& path, QtWish wish) {
  QImageReader::setAllocationLimit(0);  // the default refuses pictures of 45 megapixels
  QImageReader reader(QString::fromStdString(path));
  reader.setAutoTransform(true);
  const QSize stored = reader.size();
  if (wish.longestSide > 0 && std::max(stored.width(), stored.height()) > wish.longestSide) {
    reader.setScaledSize(stored.scaled(wish.longestSide, wish.longestSide, Qt::KeepAspectRatio));
  }
  QImage image = reader.read();
  if (wish.toSrgb && image.colorSpace().isValid()) image.convertToColorSpace(QColorSpace::SRgb);
  return image;
}

}  // namespace

std::optional<SizePx> loadWithImlib(const std::string& path) {
  imlib_set_cache_size(0);
  Imlib_Image image = imlib_load_image_immediately(path.c_str());
  if (image == nullptr) return std::nullopt;
  imlib_context_set_image(image);
  const SizePx size{imlib_image_get_width(), imlib_image_get_height()};
  imlib_free_image_and_decache();
  return size;
}

std::optional<SizePx> loadWithQt(const std::string& path, QtWish wish) {
  const QImage image = readWithQt(path, wish);
  if (image.isNull()) return std::nullopt;
  return SizePx{image.width(), image.height()};
}

std::vector<std::uint8_t> pixelsOfQt(const std::string& path, QtWish wish, SizePx& size) {
  const QImage image = readWithQt(path, wish).convertToFormat(QImage::Format_RGB888);
  size = {image.width(), image.height()};
  const auto rowBytes = static_cast<std::size_t>(image.width()) * 3;
  std::vector<std::uint8_t> pixels(rowBytes * static_cast<std::size_t>(image.height()));
  for (int y = 0; y < image.height(); ++y) {
    std::memcpy(pixels.data() + rowBytes * static_cast<std::size_t>(y), image.constScanLine(y), rowBytes);
  }
  return pixels;
}

}  // namespace lumivane

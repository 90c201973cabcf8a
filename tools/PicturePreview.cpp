#include "tools/PicturePreview.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <QTransform>
#include <algorithm>

#include "compositor/model/BitmapRows.h"

namespace lumivane {
namespace {

int longerSide(SizePx size) {
  return std::max(size.width, size.height);
}

// The smallest mip level that is still large enough: shrinking starts from there.
std::size_t levelFor(const Bitmap& picture, int longestSide) {
  std::size_t level = 0;
  while (level + 1 < picture.levels().size() && longerSide(picture.levels()[level + 1].size) >= longestSide)
    ++level;
  return level;
}

// In which way the stored pixels are turned for each code of Exif; a mirroring comes first.
QTransform transformOf(OrientationCode orientation) {
  constexpr int kQuarterTurnsClockwise[] = {0, 0, 0, 2, 2, 3, 1, 1, 3};
  const bool mirrored = orientation == 2 || orientation == 4 || orientation == 5 || orientation == 7;
  QTransform transform;
  transform.rotate(90 * kQuarterTurnsClockwise[orientation]);
  if (mirrored) transform.scale(-1, 1);
  return transform;
}

QImage shrunk(const Bitmap& picture, int longestSide) {
  const std::size_t level = levelFor(picture, longestSide);
  const BitmapLevel& place = picture.levels()[level];
  BitmapRows rows(picture);
  const RgbaRows pixels = rows.read(level, 0, place.size.height);
  const QImage view(reinterpret_cast<const uchar*>(pixels.first), place.size.width, place.size.height,
                    static_cast<qsizetype>(pixels.strideBytes), QImage::Format_RGBA8888_Premultiplied);
  const double scale = std::min(1.0, static_cast<double>(longestSide) / longerSide(picture.storedSize()));
  const auto side = [&](int stored) { return std::max(1, static_cast<int>(stored * scale + 0.5)); };
  return view.scaled(side(picture.storedSize().width), side(picture.storedSize().height),
                     Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

Result<std::string> previewPng(const Bitmap& picture, int longestSide) {
  QImage image = shrunk(picture, longestSide).transformed(transformOf(picture.orientation()));
  image = image.convertToFormat(picture.opaque() ? QImage::Format_RGB888 : QImage::Format_RGBA8888);
  image.setColorSpace(QColorSpace::SRgb);
  QBuffer png;
  if (image.isNull() || !png.open(QIODevice::WriteOnly) || !image.save(&png, "PNG")) {
    return Error{"no preview could be made"};
  }
  return png.data().toStdString();
}

}  // namespace lumivane

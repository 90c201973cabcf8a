#include "tools/PicturePreview.h"

#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cstring>

namespace lumivane {
namespace {

// A picture of the given size whose corners, as stored, are red, green (right), blue (below) and black.
Bitmap quarteredBitmap(SizePx size, OrientationCode orientation) {
  PixelBuffer pixels = PixelBuffer::allocate(packedLevelsBytes(size));
  const std::vector<BitmapLevel> levels = packedLevels(size);
  for (const BitmapLevel& level : levels) {
    for (int y = 0; y < level.size.height; ++y) {
      for (int x = 0; x < level.size.width; ++x) {
        const bool right = x * 2 >= level.size.width;
        const bool below = y * 2 >= level.size.height;
        const unsigned char pixel[4] = {static_cast<unsigned char>(!right && !below ? 255 : 0),
                                        static_cast<unsigned char>(right && !below ? 255 : 0),
                                        static_cast<unsigned char>(!right && below ? 255 : 0), 255};
        const std::size_t at = level.offsetBytes + static_cast<std::size_t>(y) * level.strideBytes +
                               static_cast<std::size_t>(x) * 4;
        std::memcpy(pixels.bytes().data() + at, pixel, 4);
      }
    }
  }
  return Bitmap(std::move(pixels), levels, orientation, true);
}

QImage preview(const Bitmap& picture, int longestSide = 256) {
  const Result<std::string> png = previewPng(picture, longestSide);
  if (!png) return {};
  return QImage::fromData(reinterpret_cast<const uchar*>(png.value().data()),
                          static_cast<int>(png.value().size()), "PNG");
}

// The colours of the corners: upper left, upper right, lower left, lower right.
std::string corners(const QImage& image) {
  const auto letter = [&](int x, int y) {
    const QColor color = image.pixelColor(x, y);
    if (color.red() > 128) return 'R';
    if (color.green() > 128) return 'G';
    return color.blue() > 128 ? 'B' : 'k';
  };
  const int right = image.width() - 1;
  const int bottom = image.height() - 1;
  return {letter(0, 0), letter(right, 0), letter(0, bottom), letter(right, bottom)};
}

TEST(PicturePreview, SmallPicturesKeepTheirSize) {
  EXPECT_EQ(preview(quarteredBitmap({40, 20}, 1)).size(), QSize(40, 20));
  EXPECT_EQ(preview(quarteredBitmap({1, 1}, 1)).size(), QSize(1, 1));
}

TEST(PicturePreview, LargePicturesAreShrunkInProportion) {
  EXPECT_EQ(preview(quarteredBitmap({1000, 500}, 1)).size(), QSize(256, 128));
  EXPECT_EQ(preview(quarteredBitmap({1000, 500}, 6)).size(), QSize(128, 256));
  EXPECT_EQ(preview(quarteredBitmap({257, 3}, 1)).size(), QSize(256, 3));
  EXPECT_EQ(preview(quarteredBitmap({4000, 1}, 1)).size(), QSize(256, 1));
  EXPECT_EQ(corners(preview(quarteredBitmap({1000, 500}, 1))), "RGBk");
}

TEST(PicturePreview, EveryOrientationIsApplied) {
  const char* const expected[] = {"RGBk", "GRkB", "kBGR", "BkRG", "RBGk", "BRkG", "kGBR", "GkRB"};
  for (OrientationCode code = 1; code <= 8; ++code) {
    const QImage image = preview(quarteredBitmap({40, 20}, code));
    EXPECT_EQ(corners(image), expected[code - 1]) << code;
    EXPECT_EQ(image.size(), code >= 5 ? QSize(20, 40) : QSize(40, 20)) << code;
  }
}

}  // namespace
}  // namespace lumivane

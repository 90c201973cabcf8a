// Pictures about as detailed as photographs, made once and kept in the folder for temporary files (TMPDIR) for the next
// run.
//
// Threads: one at a time.
// Units:   pixels.
// Errors:  vips::VError where a picture cannot be made or written.
#pragma once

#include <string>

#include "platform/Geometry.h"

namespace lumivane {

inline constexpr SizePx k12Megapixels{4000, 3000};
inline constexpr SizePx k24Megapixels{6000, 4000};
inline constexpr SizePx k45Megapixels{8256, 5504};
inline constexpr SizePx k100Megapixels{11648, 8736};

enum class JpegKind {
  Plain,        // baseline, colours at half the resolution (4:2:0), about 0.28 bytes a pixel
  QuarterTurn,  // the same pixels, to be shown with a quarter turn clockwise (Exif orientation 6)
  Progressive,
  DisplayP3,  // with the colour profile that telephones embed
};

// Each returns the path of the picture.
[[nodiscard]] std::string jpegPicture(SizePx size, JpegKind kind);
[[nodiscard]] std::string pngPicture(SizePx size);
[[nodiscard]] std::string tiffPicture(SizePx size);  // LZW with a predictor, in strips
[[nodiscard]] std::string webpPicture(SizePx size);  // lossy
[[nodiscard]] std::string heicPicture(SizePx size);  // one tile
[[nodiscard]] std::string avifPicture(SizePx size);

}  // namespace lumivane

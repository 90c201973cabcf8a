// One file format: what its header says of image 0, and its pixels.
//
// Threads: one at a time.
// Owns:    nothing of the file; the source that made it keeps the file open.
// Units:   pixels as stored, before any turn.
// Errors:  a status instead of a header; no picture when the pixel data is cut short or damaged.
#pragma once

#include <memory>
#include <optional>
#include <span>

#include "compositor/model/Bitmap.h"
#include "imaging/ImageDecoder.h"
#include "imaging/decode/PictureFile.h"
#include "imaging/decode/PixelSource.h"

namespace lumivane {

struct PictureHeader {
  SizePx size;
  // Set when the format itself says how the picture is turned (HEIF, JPEG XL, raw): then Exif has no say.
  std::optional<OrientationCode> ownTurn;
};

class PictureCodec {
 public:
  virtual ~PictureCodec() = default;

  [[nodiscard]] virtual const PictureHeader& header() const = 0;

  // The Exif block as the container's own library finds it, a TIFF structure; empty where that is not done.
  [[nodiscard]] virtual std::span<const std::byte> exif() const { return {}; }

  // `orientation` is how the stored pixels are to be turned. A codec that turns them by itself makes a bitmap
  // with orientation 1, of the turned size.
  [[nodiscard]] virtual BitmapRef decode(PixelSource& pool, int maxPixelSize,
                                         OrientationCode orientation) = 0;
};

// A codec, or why there is none.
struct OpenedCodec {
  std::unique_ptr<PictureCodec> codec;
  ImageSourceStatus status = ImageSourceStatus::Complete;
};

}  // namespace lumivane

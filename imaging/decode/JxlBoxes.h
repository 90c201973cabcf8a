// What libjxl says of a JPEG XL file without decoding its pixels: its turn and kind of alpha, and its Exif
// and XMP boxes.
//
// Threads: any.
// Errors:  nothing for a file that is not JPEG XL; what is missing, cut short or too large is left empty.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "compositor/model/Bitmap.h"
#include "imaging/decode/PictureFile.h"

namespace lumivane {

struct JxlHeader {
  OrientationCode turn = 1;
  bool premultiplied = false;  // the colours are stored multiplied by their alpha
};

[[nodiscard]] std::optional<JxlHeader> jxlHeaderOf(const PictureFile& file);

struct JxlMetadata {
  std::vector<std::byte> exif;  // a TIFF structure
  std::string xmp;
};

[[nodiscard]] JxlMetadata jxlMetadataOf(const PictureFile& file);

}  // namespace lumivane

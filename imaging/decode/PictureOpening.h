// Finds the codec for a picture file: by its content, never by its name.
//
// Threads: any.
// Errors:  a status instead of a codec.
#pragma once

#include "imaging/decode/PictureCodec.h"
#include "imaging/decode/PictureType.h"

namespace lumivane {

struct OpenedPicture {
  PictureType type = PictureType::Unknown;
  OpenedCodec opened;
};

// Reads the header, and no pixels. Requires: `file` outlives the codec.
[[nodiscard]] OpenedPicture openPicture(const PictureFile& file);

}  // namespace lumivane

// JPEG by libjpeg-turbo, straight into the picture's own memory.
//
// Threads: one at a time.
// Errors:  see PictureCodec. Pictures in inks (CMYK) are not decoded here: their colours need another path.
#pragma once

#include "imaging/decode/PictureCodec.h"

namespace lumivane {

// Requires: `file` outlives the codec. Without a codec and with status Complete the picture is in inks.
[[nodiscard]] OpenedCodec openJpegCodec(const PictureFile& file);

}  // namespace lumivane

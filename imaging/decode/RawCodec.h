// Camera raw by LibRaw: the full sensor data, demosaiced; never the preview that cameras put beside it.
//
// Threads: one at a time.
// Errors:  see PictureCodec; UnknownType for a file that is no camera raw after all.
#pragma once

#include "imaging/decode/PictureCodec.h"

namespace lumivane {

// Most raw files are written in TIFF's structure. Whether such a file may be one, by a few entries of its first directory.
[[nodiscard]] bool mayBeCameraRaw(const PictureFile& tiff);

// Requires: `file` outlives the codec.
[[nodiscard]] OpenedCodec openRawCodec(const PictureFile& file);

}  // namespace lumivane

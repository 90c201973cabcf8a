// Everything that libvips reads for us: PNG, GIF, TIFF, WebP, HEIF, JPEG XL, JPEG 2000, and JPEG in inks.
//
// Only the one loader that fits the file's type is ever called, and the file is read through a callback: a mapped
// file that becomes shorter, or whose disk goes away, would end the program.
//
// Threads: one at a time.
// Errors:  see PictureCodec; the library's error text is dropped at once, because all threads share it.
#pragma once

#include "imaging/decode/PictureCodec.h"
#include "imaging/decode/PictureType.h"

namespace lumivane {

// Requires: `file` outlives the codec. `turn` is what the container says of the picture's turn, which the library
// has applied by itself; the header then speaks of the size before that turn.
[[nodiscard]] OpenedCodec openVipsCodec(const PictureFile& file, PictureType type,
                                        std::optional<OrientationCode> turn);

}  // namespace lumivane

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

// What a container says of the picture and the library does not tell.
struct ContainerFacts {
  // The turn that the library has applied by itself. The header then speaks of the size before it.
  std::optional<OrientationCode> turn;
  // The library hands out colours that are multiplied by their alpha already.
  bool premultiplied = false;
};

// Starts the library with all loaders that it keeps in files of their own; false when it cannot be had. Any number of
// times, openVipsCodec() does it by itself.
bool startVips();

// Requires: `file` outlives the codec.
[[nodiscard]] OpenedCodec openVipsCodec(const PictureFile& file, PictureType type, ContainerFacts facts);

}  // namespace lumivane

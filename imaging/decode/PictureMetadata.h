// Reads what a picture file says about the picture: Exif, IPTC and XMP, through Exiv2.
//
// Threads: any; files are read one after the other, because Exiv2's XMP toolkit is not made for threads.
// Owns:    nothing.
// Units:   degrees without sign.
// Errors:  none; what is absent, damaged or absurd is absent from the result.
#pragma once

#include <cstddef>
#include <span>

#include "imaging/PropertyDictionary.h"
#include "imaging/decode/PictureFile.h"
#include "imaging/decode/PictureType.h"

namespace lumivane {

// Starts Exiv2; any number of times, readPictureMetadata() does it by itself. Not on two threads at once.
void startExiv();

// Everything but the pixel sizes, which the decoder knows better. `exif` (may be empty) is the Exif block as the
// container's own library found it: it stands in where Exiv2 does not find one.
[[nodiscard]] PropertyDictionary readPictureMetadata(const PictureFile& file, PictureType type,
                                                     std::span<const std::byte> exif);

}  // namespace lumivane

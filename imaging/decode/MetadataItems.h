// Picks the items that the show uses out of the metadata that Exiv2 has parsed.
//
// Threads: any; pure functions.
// Units:   degrees without sign.
// Errors:  none; what is absent or absurd is absent from the result. Exiv2's exceptions pass through.
#pragma once

#include <exiv2/exiv2.hpp>

#include "imaging/PropertyDictionary.h"

namespace lumivane {

[[nodiscard]] PropertyDictionary metadataItems(Exiv2::ExifData& exif, Exiv2::IptcData& iptc,
                                               Exiv2::XmpData& xmp);

}  // namespace lumivane

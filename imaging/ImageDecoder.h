// The one way to a picture file: opens it, says what it is, and decodes it to at most a given size.
//
// Threads: any; an ImageSource is used by one thread at a time.
// Owns:    a source owns its open file; a decoded picture owns its pixels.
// Units:   pixels.
// Errors:  absence, and a status; a decoder never throws, whatever the file holds.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "compositor/model/Bitmap.h"
#include "imaging/PropertyDictionary.h"

namespace lumivane {

// The longest side of a decoded picture. Larger ones are shrunk, smaller ones keep their size.
inline constexpr int kThumbnailMaxPixelSize = 8192;

// Complete is the only status with which a source can be used; the numbers appear in the log.
enum class ImageSourceStatus : int {
  Complete = 0,
  Incomplete = -1,     // the header is cut short
  UnknownType = -3,    // no picture of a type that is shown
  InvalidData = -4,    // a known type, but its header makes no sense
  UnexpectedEnd = -5,  // nothing in the file
  DecoderFailed = -6,  // what opens pictures ended over this one, took too long, or answered nonsense
};

class ImageSource {
 public:
  virtual ~ImageSource() = default;
  [[nodiscard]] virtual ImageSourceStatus status() const = 0;
  // The properties of image 0.
  [[nodiscard]] virtual std::optional<PropertyDictionary> properties() = 0;
  // Image 0 decoded in full (never an embedded preview), in sRGB, with its mip levels, its orientation told by
  // the bitmap, its longer side at most maxPixelSize. nullptr when the data is cut short or damaged.
  [[nodiscard]] virtual BitmapRef thumbnail(int maxPixelSize) = 0;
};

class ImageDecoder {
 public:
  virtual ~ImageDecoder() = default;
  // nullptr when the file cannot be opened (gone, no permission, not a regular file).
  [[nodiscard]] virtual std::unique_ptr<ImageSource> open(const std::string& path) = 0;
};

}  // namespace lumivane

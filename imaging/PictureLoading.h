// Loads one picture for the show: opens it, checks it, decodes it, and says in the log's own words what went wrong.
//
// Threads: any; the outcome is plain data, and its messages are to be told on the main thread.
// Owns:    nothing.
// Units:   pixels as stored.
// Errors:  a picture that cannot be shown leaves `picture` empty; `messages` says why, in the order in which it
//          was found out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "imaging/ImageDecoder.h"

namespace lumivane {

// A picture whose sides are both longer than this is refused.
inline constexpr int kLargestPixelSize = 65536;

struct LoadedPicture {
  BitmapRef image;
  PropertyDictionary properties;
};

// What the loader has to say, and how it is to be told.
struct LoadMessage {
  enum class Kind {
    LogError,         // to the log, as an error
    DisplayError,     // on the screen and to the log, `text` followed by `with`
    FileAccessError,  // probe the file `with` and log the system's reason
  };
  Kind kind = Kind::LogError;
  std::string text;
  std::string with;
};

struct LoadOutcome {
  std::optional<LoadedPicture> picture;
  std::vector<LoadMessage> messages;
};

struct LoadLimits {
  std::uint32_t excludeSize = 0;  // a picture with a shorter side than this is refused; compared unsigned
  std::string filenameOnScreen;   // the picture shown now, which is what the message about the size names
  int longestSide = kThumbnailMaxPixelSize;  // in pixels; a larger picture is made smaller
};

[[nodiscard]] LoadOutcome loadPicture(ImageDecoder& decoder, const std::string& path,
                                      const LoadLimits& limits);

}  // namespace lumivane

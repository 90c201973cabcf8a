// What the slideshow makes of one picture file, and how that is told.
//
// Threads: any; functions of their arguments.
// Units:   pixels as stored and as seen; degrees.
// Errors:  a file that cannot be opened has no place here; one that is refused says why.
#pragma once

#include <optional>
#include <string>

#include "imaging/ImageInfo.h"
#include "imaging/PictureLoading.h"

namespace lumivane {

struct InspectedPicture {
  std::string path;
  bool couldBeOpened = true;
  std::optional<std::string> reason;  // why it is not shown, as the show's log has it
  std::optional<ImageInfo> info;      // absent when the file holds no picture
  bool hasPosition = false;
  BitmapRef image;  // nullptr unless it is shown

  [[nodiscard]] bool accepted() const { return image != nullptr; }
};

struct InspectRules {
  std::uint32_t excludeSize = 0;  // pixels
  bool displayFilename = true;    // as the show's setting: the caption leaves out what the file name says
};

// Loads the picture the way the show does.
[[nodiscard]] InspectedPicture inspectPicture(ImageDecoder& decoder, const std::string& path,
                                              const InspectRules& rules);

// One JSON object on one line, without a line end.
[[nodiscard]] std::string jsonLine(const InspectedPicture& picture);
// A few lines for reading, control characters made visible.
[[nodiscard]] std::string readableBlock(const InspectedPicture& picture);

}  // namespace lumivane

// What the slideshow makes of one picture file, and how that is told.
//
// Threads: any; functions of their arguments.
// Units:   pixels as stored and as seen; degrees.
// Errors:  a file that cannot be opened has no place here; one that is refused says why.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "imaging/Geocoder.h"
#include "imaging/ImageInfo.h"
#include "imaging/InformationText.h"
#include "imaging/PictureLoading.h"

namespace lumivane {

struct InspectedPicture {
  std::string path;
  bool couldBeOpened = true;
  std::optional<std::string> reason;  // why it is not shown, as the show's log has it
  std::optional<ImageInfo> info;      // absent when the file holds no picture
  bool hasPosition = false;
  std::optional<std::string> place;  // what the show calls the position; absent when it cannot tell
  std::vector<std::string>
      infoLines;    // what stands on the screen beside the picture; empty unless it is shown
  BitmapRef image;  // nullptr unless it is shown

  [[nodiscard]] bool accepted() const { return image != nullptr; }
};

// The settings of the display that decide.
struct InspectRules {
  std::uint32_t excludeSize = 0;  // pixels
  FilenameDisplay filename;       // the caption leaves out what a shown file name says
  bool showImageInfo = true;      // whether there is a second line
};

// Names the place at a latitude and a longitude.
using PlaceLookup = std::function<Result<Placemark>(double, double)>;

// Loads the picture the way the show does.
[[nodiscard]] InspectedPicture inspectPicture(ImageDecoder& decoder, const std::string& path,
                                              const InspectRules& rules, const PlaceLookup& placeAt);

// One JSON object on one line, without a line end.
[[nodiscard]] std::string jsonLine(const InspectedPicture& picture);
// A few lines for reading, control characters made visible.
[[nodiscard]] std::string readableBlock(const InspectedPicture& picture);

}  // namespace lumivane

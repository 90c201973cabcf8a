// Fits a text into the screen and says how its layer is to be made: what is written, in which style, how large.
//
// Threads: main only (the text renderer is).
// Units:   points; counts in UTF-16 code units, as the text renderer measures.
// Errors:  none; what is not valid UTF-8 becomes replacement characters.
#pragma once

#include <string>

#include "imaging/TextRenderer.h"
#include "platform/Geometry.h"

namespace lumivane {

struct TextLayout {
  std::string text;
  TextStyle style;
  RectPt bounds;  // of the layer, a little larger than the text
};

struct TextLayoutRequest {
  std::string text;
  double fontSizePt = 20;
  SizePt screen;
  bool adjustWidth = false;    // squeeze or shorten a first line that is too wide
  bool showImagePath = false;  // the first line is a path: its beginning may go, its end must stay visible
  bool operator==(const TextLayoutRequest&) const = default;
};

[[nodiscard]] TextLayout layOutText(const TextRenderer& renderer, const TextLayoutRequest& request);

}  // namespace lumivane

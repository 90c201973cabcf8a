// Turns text into pixels and tells how much of it fits: the typesetting engine of the desktop.
//
// Threads: main only.
// Units:   points for sizes, pixels = points x scale; counts in UTF-16 code units, never splitting what is seen
//          as one character.
// Errors:  none; text that is not valid UTF-8 is shown with replacement characters.
#pragma once

#include <cstddef>
#include <string_view>

#include "compositor/model/Bitmap.h"
#include "platform/Geometry.h"

namespace lumivane {

enum class LineBreakMode {
  Clipping,           // only "\n" ends a line; what is too wide is cut off
  CharacterWrapping,  // a full line goes on in the next one, after any character
};

struct TextStyle {
  double fontSizePt = 20;
  double kerningPt = 0;  // added between characters; negative squeezes them
  LineBreakMode lineBreakMode = LineBreakMode::Clipping;
  Color color{1, 1, 1, 1};
  bool styled = true;  // false: the desktop's default font and colour, as when the wanted font is missing
};

struct TextMeasure {
  SizePt size;                        // what the fitting text takes up
  std::size_t fittingUtf16Units = 0;  // how much of the text fits
};

class TextRenderer {
 public:
  virtual ~TextRenderer() = default;

  // Whether the font that `styled` text is set in is there.
  [[nodiscard]] virtual bool fontAvailable() const = 0;

  // Sets the text into a box and tells what fits.
  [[nodiscard]] virtual TextMeasure measure(std::string_view utf8, const TextStyle& style,
                                            SizePt box) const = 0;

  // The text as pixels on a transparent ground, for a layer of the given size, at `scale` device pixels a point.
  [[nodiscard]] virtual BitmapRef render(std::string_view utf8, const TextStyle& style, SizePt size,
                                         double scale) const = 0;
};

}  // namespace lumivane

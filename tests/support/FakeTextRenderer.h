// A text renderer of fixed widths, and bitmaps of nothing, for tests that look at neither.
#pragma once

#include <algorithm>
#include <memory>

#include "imaging/TextRenderer.h"

namespace lumivane {

[[nodiscard]] inline BitmapRef makeBlankBitmap(SizePx size, OrientationCode orientation = 1) {
  return std::make_shared<Bitmap>(PixelBuffer::allocate(packedLevelsBytes(size)), packedLevels(size),
                                  orientation, true);
}

// Every character is half as wide as the font is high, every line 1.2 times as high.
class FakeTextRenderer final : public TextRenderer {
 public:
  bool available = true;
  mutable int renders = 0;

  [[nodiscard]] bool fontAvailable() const override { return available; }
  [[nodiscard]] TextMeasure measure(std::string_view utf8, const TextStyle& style,
                                    SizePt box) const override {
    const double width = style.fontSizePt * 0.5 + style.kerningPt;
    TextMeasure measure;
    std::size_t longest = 0;
    std::size_t lines = 1;
    std::size_t inLine = 0;
    for (const char c : utf8) {
      if (c == '\n') {
        ++lines;
        inLine = 0;
      } else {
        longest = std::max(longest, ++inLine);
      }
    }
    const auto fit = static_cast<std::size_t>(box.width / width);
    measure.fittingUtf16Units = lines == 1 ? std::min(utf8.size(), fit) : utf8.size();
    measure.size = {static_cast<double>(std::min(longest, fit)) * width,
                    static_cast<double>(lines) * style.fontSizePt * 1.2};
    return measure;
  }
  [[nodiscard]] BitmapRef render(std::string_view /*utf8*/, const TextStyle& /*style*/, SizePt /*size*/,
                                 double /*scale*/) const override {
    ++renders;
    return makeBlankBitmap({8, 2});
  }
};

}  // namespace lumivane

// A text renderer of fixed widths, and bitmaps of nothing, for tests that look at neither.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "imaging/TextRenderer.h"

namespace lumivane {

[[nodiscard]] inline BitmapRef makeBlankBitmap(SizePx size, OrientationCode orientation = 1) {
  return std::make_shared<Bitmap>(PixelBuffer::allocate(packedLevelsBytes(size)), packedLevels(size),
                                  orientation, true);
}

// Every UTF-16 unit is half as wide as the font is high, every line 1.2 times as high. What it was asked it keeps.
class FakeTextRenderer final : public TextRenderer {
 public:
  struct Measured {
    std::string text;
    TextStyle style;
    SizePt box;
  };
  bool available = true;
  mutable std::vector<Measured> measured;
  mutable int renders = 0;
  mutable SizePt renderedSize;
  mutable double renderedScale = 0;

  [[nodiscard]] bool fontAvailable() const override { return available; }

  [[nodiscard]] TextMeasure measure(std::string_view utf8, const TextStyle& style,
                                    SizePt box) const override {
    measured.push_back({std::string(utf8), style, box});
    Page page{std::max(0.01, style.fontSizePt * 0.5 + style.kerningPt), style.fontSizePt * 1.2, box,
              style.lineBreakMode == LineBreakMode::CharacterWrapping};
    for (std::size_t start = 0; start <= utf8.size();) {
      const std::size_t end = std::min(utf8.find('\n', start), utf8.size());
      if (!page.add(utf16Length(utf8.substr(start, end - start)))) break;
      if (end < utf8.size()) ++page.fitting;
      start = end + 1;
    }
    return {{std::min(page.width, box.width), page.height}, page.fitting};
  }

  [[nodiscard]] BitmapRef render(std::string_view /*utf8*/, const TextStyle& /*style*/, SizePt size,
                                 double scale) const override {
    ++renders;
    renderedSize = size;
    renderedScale = scale;
    return makeBlankBitmap({8, 2});
  }

 private:
  struct Page {
    double unitWidth;
    double lineHeight;
    SizePt box;
    bool wraps;
    double width = 0;
    double height = 0;
    std::size_t fitting = 0;

    // Sets a paragraph below what is there; false when not all of it fits.
    bool add(std::size_t units) {
      const auto full = wraps ? static_cast<std::size_t>(box.width / unitWidth) : units;
      do {
        const std::size_t inLine = std::min(units, full);
        if (height + lineHeight > box.height || (units > 0 && inLine == 0)) return false;
        width = std::max(width, static_cast<double>(inLine) * unitWidth);
        height += lineHeight;
        fitting += inLine;
        units -= inLine;
      } while (units > 0);
      return true;
    }
  };

  // Of valid UTF-8.
  [[nodiscard]] static std::size_t utf16Length(std::string_view utf8) {
    std::size_t units = 0;
    for (const char c : utf8) {
      const auto byte = static_cast<unsigned char>(c);
      units += byte >= 0xF0 ? 2U : ((byte & 0xC0U) == 0x80U ? 0U : 1U);
    }
    return units;
  }
};

}  // namespace lumivane

// Text as Qt sets it: the fonts of the desktop, all scripts, emoji in colour where a font has them.
//
// Threads: main only; made after QGuiApplication.
// Units:   as in TextRenderer.h. Glyphs are placed without hinting, so that a text measures the same at every scale.
// Errors:  as in TextRenderer.h.
#pragma once

#include "imaging/TextRenderer.h"
#include "platform/Log.h"
#include "platform/linux/TextFonts.h"

namespace lumivane {

class QtTextRenderer final : public TextRenderer {
 public:
  // Says once in the log which font stands in for the wanted one, or that none does: text then is without style.
  explicit QtTextRenderer(Log& log, TextFonts fonts = chooseTextFonts());

  [[nodiscard]] bool fontAvailable() const override { return !fonts_.fixedWidth.empty(); }
  [[nodiscard]] TextMeasure measure(std::string_view utf8, const TextStyle& style, SizePt box) const override;
  [[nodiscard]] BitmapRef render(std::string_view utf8, const TextStyle& style, SizePt size,
                                 double scale) const override;

 private:
  const TextFonts fonts_;
};

}  // namespace lumivane

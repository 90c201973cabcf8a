// Text as Qt sets it: the fonts of the desktop, all scripts, emoji where a font has them.
//
// Threads: main only; made after QGuiApplication.
// Units:   as in TextRenderer.h. Glyphs are placed without hinting, so that a text measures the same at every scale.
// Errors:  as in TextRenderer.h.
//
// Styled text is set in Andale Mono. Where that is not installed the desktop's fixed-width font stands in, and that is
// as good: fontAvailable() is false only where there is no fixed-width font at all.
#pragma once

#include <QString>

#include "imaging/TextRenderer.h"
#include "platform/Log.h"

namespace lumivane {

class QtTextRenderer final : public TextRenderer {
 public:
  // Says once in the log which font stands in, if one does.
  explicit QtTextRenderer(Log& log);

  [[nodiscard]] bool fontAvailable() const override { return !family_.isEmpty(); }
  [[nodiscard]] TextMeasure measure(std::string_view utf8, const TextStyle& style, SizePt box) const override;
  [[nodiscard]] BitmapRef render(std::string_view utf8, const TextStyle& style, SizePt size,
                                 double scale) const override;

 private:
  const QString family_;  // empty = no fixed-width font
};

}  // namespace lumivane

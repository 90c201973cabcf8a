// Breaks a text into lines for a given width.
//
// Threads: main only.
// Owns:    the laid-out lines.
// Units:   points; counts in UTF-16 code units of the whole text, line ends included.
// Errors:  none.
#pragma once

#include <QFont>
#include <QString>
#include <QTextLayout>
#include <memory>
#include <string_view>
#include <vector>

#include "imaging/TextRenderer.h"
#include "platform/Geometry.h"

class QPainter;

namespace lumivane {

// A text of any length is set only as far as it can matter: this much of each paragraph, and no line below the box.
inline constexpr qsizetype kMaxParagraphUnits = 8192;

class QtTypesetting {
 public:
  // The font is one of typesettingFont().
  QtTypesetting(const QString& text, const QFont& font, LineBreakMode mode, SizePt box);

  [[nodiscard]] TextMeasure measure() const;
  // Paints with the painter's pen, the upper left corner of the first line at the origin.
  void paint(QPainter& painter) const;

 private:
  [[nodiscard]] bool setParagraph(const QString& paragraph, bool last);

  // Constant after construction.
  const QFont font_;
  const LineBreakMode mode_;
  const SizePt box_;
  const double plainLineHeight_;

  std::vector<std::unique_ptr<QTextLayout>> paragraphs_;
  double width_ = 0;
  double height_ = 0;
  qsizetype fittingUnits_ = 0;
};

// The font in a size given in layer points (rounded to whole ones, as Qt does), whatever resolution the display is said
// to have.
[[nodiscard]] QFont typesettingFont(QFont font, double sizePt, double kerningPt);

}  // namespace lumivane

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
#include <vector>

#include "imaging/TextRenderer.h"
#include "platform/Geometry.h"
#include "platform/linux/EmojiRuns.h"

class QPainter;

namespace lumivane {

// A text of any length is set only as far as it can matter: as much of each paragraph as may be seen in a line, no line
// below the box, and never more than this in all.
inline constexpr qsizetype kMostUnits = 16384;

// Both as makeFont() makes them.
struct TypesettingFonts {
  QFont text;
  QFont emoji;
};

class QtTypesetting {
 public:
  QtTypesetting(const QString& text, const TypesettingFonts& fonts, LineBreakMode mode, SizePt box);

  [[nodiscard]] TextMeasure measure() const;
  // Paints with the painter's pen, the upper left corner of the first line at the origin. A line that is wider than
  // `room` by a little is squeezed into it; otherwise its end is cut off, which is to the left where it is read from
  // the right.
  void paint(QPainter& painter, double room) const;

 private:
  struct Line {
    QTextLine line;  // of one of paragraphs_
    bool rightToLeft = false;
  };

  struct LineHeight {
    double ascent = 0;
    double descent = 0;
  };

  [[nodiscard]] static LineHeight plainLine(const QFont& font);
  [[nodiscard]] bool setParagraph(const QString& paragraph, bool last);
  [[nodiscard]] std::unique_ptr<QTextLayout> layoutFor(const QString& shaped,
                                                       const std::vector<TextRun>& emoji) const;
  // Puts the next line below the others, if it fits.
  [[nodiscard]] bool placeLine(QTextLine line, bool rightToLeft);

  // Constant after construction.
  const TypesettingFonts fonts_;
  const LineBreakMode mode_;
  const SizePt box_;
  const LineHeight plain_;            // of the font itself, without those that stand in for it
  const double lineRoom_;             // how much height there must be for another line
  const qsizetype unitsInParagraph_;  // more of one is not looked at

  std::vector<std::unique_ptr<QTextLayout>> paragraphs_;
  std::vector<Line> lines_;
  double width_ = 0;
  double height_ = 0;
  qsizetype fittingUnits_ = 0;
  qsizetype unitsLeft_ = kMostUnits;
};

// A font in its style "Regular" and in a size given in layer points (rounded to whole ones, as Qt does), whatever
// resolution the display is said to have. The first family that has a character sets it; after them any font that does.
[[nodiscard]] QFont makeFont(const QStringList& families, double sizePt, double kerningPt = 0);

}  // namespace lumivane

#include "platform/linux/QtTypesetting.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextOption>
#include <algorithm>
#include <cmath>

namespace lumivane {
namespace {

constexpr double kWithoutEnd = 1e6;  // points; wider than any line, and exact in Qt's fixed-point layout
constexpr double kRoundingPt = 1e-3;
constexpr double kLargestFont = 2000;  // points

// The beginning of a paragraph, cut between two characters.
QString shapeable(const QString& paragraph) {
  if (paragraph.size() <= kMaxParagraphUnits) return paragraph;
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, paragraph);
  characters.setPosition(kMaxParagraphUnits);
  const qsizetype end = characters.isAtBoundary() ? kMaxParagraphUnits : characters.toPreviousBoundary();
  return paragraph.left(end > 0 ? end : kMaxParagraphUnits);
}

QTextOption optionsFor(LineBreakMode mode) {
  QTextOption options;
  options.setWrapMode(mode == LineBreakMode::CharacterWrapping ? QTextOption::WrapAnywhere
                                                               : QTextOption::NoWrap);
  options.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
  return options;
}

}  // namespace

QFont typesettingFont(QFont font, double sizePt, double kerningPt) {
  // In pixels, of which there is one a point here. A resolution of our own would do as well, were it not that Qt 6.4
  // then rounds the letter spacing down to nothing.
  font.setPixelSize(
      std::isfinite(sizePt) ? static_cast<int>(std::clamp(std::round(sizePt), 1.0, kLargestFont)) : 1);
  font.setHintingPreference(QFont::PreferNoHinting);
  // Coloured fringes are for opaque grounds only.
  font.setStyleStrategy(
      static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
  if (kerningPt != 0) font.setLetterSpacing(QFont::AbsoluteSpacing, kerningPt);
  return font;
}

QtTypesetting::QtTypesetting(const QString& text, const QFont& font, LineBreakMode mode, SizePt box)
    : font_(font), mode_(mode), box_(box), plainLineHeight_(QFontMetricsF(font).height()) {
  for (qsizetype start = 0; start <= text.size();) {
    const qsizetype end = text.indexOf(u'\n', start);
    const bool last = end < 0;
    if (!setParagraph(text.mid(start, last ? -1 : end - start), last)) return;
    start = last ? text.size() + 1 : end + 1;
  }
}

// Sets the lines that fit below those that are there; says whether the next paragraph may follow.
bool QtTypesetting::setParagraph(const QString& paragraph, bool last) {
  QString shaped = shapeable(paragraph);
  const bool whole = shaped.size() == paragraph.size();
  // Only "\n" ends a line here.
  shaped.replace(QChar::LineSeparator, u' ').replace(QChar::ParagraphSeparator, u' ').replace(u'\r', u' ');
  auto layout = std::make_unique<QTextLayout>(shaped, font_);
  layout->setTextOption(optionsFor(mode_));
  layout->setCacheEnabled(true);
  qsizetype set = 0;
  layout->beginLayout();
  for (bool more = true; more;) {
    QTextLine line = layout->createLine();
    if (!line.isValid()) break;
    line.setLineWidth(mode_ == LineBreakMode::Clipping ? kWithoutEnd : box_.width);
    // A line fits when one of the plain font would: the fonts that stand in for single characters may be taller.
    more = height_ + plainLineHeight_ <= box_.height + kRoundingPt &&
           line.naturalTextWidth() <=
               (mode_ == LineBreakMode::Clipping ? kWithoutEnd : box_.width + kRoundingPt);
    if (!more) break;
    line.setPosition(QPointF(0, height_));
    set = line.textStart() + line.textLength();
    width_ = std::max(width_, line.naturalTextWidth());
    height_ += line.height();
  }
  layout->endLayout();
  const bool complete = set == shaped.size();
  // Cut off is what is too wide, not what is too long to be looked at.
  const bool clippedOnly = complete && mode_ == LineBreakMode::Clipping;
  const bool fits = complete && (whole || clippedOnly);
  fittingUnits_ += fits ? paragraph.size() + (last ? 0 : 1) : set;
  paragraphs_.push_back(std::move(layout));
  return fits;
}

TextMeasure QtTypesetting::measure() const {
  return {{std::min(width_, box_.width), height_}, static_cast<std::size_t>(fittingUnits_)};
}

void QtTypesetting::paint(QPainter& painter) const {
  for (const auto& paragraph : paragraphs_) paragraph->draw(&painter, QPointF(0, 0));
}

}  // namespace lumivane

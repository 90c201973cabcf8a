#include "platform/linux/QtTypesetting.h"

#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextOption>
#include <algorithm>
#include <cmath>

namespace lumivane {
namespace {

constexpr double kWithoutEnd = 1e6;  // points; wider than any line, and exact in Qt's fixed-point layout
constexpr double kRoundingPt = 1e-3;
constexpr double kLargestFont = 2000;       // points
constexpr double kTallestLine = 1.5;        // times the font size; fonts that are taller have to make do
constexpr double kStrongestSqueeze = 0.97;  // nobody sees letters that are narrower by that much

// The beginning of a paragraph, cut between two characters.
QString beginning(const QString& paragraph, qsizetype most) {
  if (paragraph.size() <= most) return paragraph;
  const QString searched = paragraph.left(most + 1);
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, searched);
  characters.setPosition(most);
  const qsizetype end = characters.isAtBoundary() ? most : characters.toPreviousBoundary();
  return paragraph.left(end > 0 ? end : most);
}

// Enough for the narrowest letters, with some to spare for marks that take no room at all.
qsizetype unitsIn(double width, double fontSize) {
  constexpr double kNarrowest = 0.15;  // times the font size
  constexpr double kSpare = 256;
  const double units = kSpare + (width > 0 ? width / (kNarrowest * fontSize) : 0);
  return static_cast<qsizetype>(std::min<double>(kMostUnits, units));
}

// Only "\n" ends a line here, and what controls a terminal is no character to look at.
bool isBlank(QChar character) {
  return character == QChar::LineSeparator || character == QChar::ParagraphSeparator ||
         (character.category() == QChar::Other_Control && character != u'\t');
}

std::u16string_view unitsOf(const QString& text) {
  return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

// Takes the marks that ask for emoji out of them: the font that is chosen says it already, and what has no glyph in it
// would be looked for in another one, which takes sequences apart. Gives back where they were.
std::vector<qsizetype> takeOutMarks(QString& text, std::vector<TextRun>& emoji) {
  std::vector<qsizetype> places;
  for (TextRun& run : emoji) {
    const auto start = static_cast<qsizetype>(run.start - places.size());
    auto end = static_cast<qsizetype>(run.start + run.length - places.size());
    for (qsizetype i = start; i < end;) {
      if (text[i] != QChar(kAsEmoji)) {
        ++i;
        continue;
      }
      text.remove(i, 1);
      places.push_back(i + static_cast<qsizetype>(places.size()));
      --end;
    }
    run = {static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)};
  }
  return places;
}

QTextOption optionsFor(LineBreakMode mode) {
  QTextOption options;
  options.setWrapMode(mode == LineBreakMode::CharacterWrapping ? QTextOption::WrapAnywhere
                                                               : QTextOption::NoWrap);
  options.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
  return options;
}

}  // namespace

QFont makeFont(const QStringList& families, double sizePt, double kerningPt) {
  QFont font;
  font.setFamilies(families);
  font.setStyleName(QStringLiteral("Regular"));
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

// As a line of text has it, which is not quite what the font's metrics say.
QtTypesetting::LineHeight QtTypesetting::plainLine(const QFont& font) {
  QTextLayout layout(QStringLiteral("x"), font);
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();
  return {line.ascent(), line.descent()};
}

QtTypesetting::QtTypesetting(const QString& text, const TypesettingFonts& fonts, LineBreakMode mode,
                             SizePt box)
    : fonts_(fonts),
      mode_(mode),
      box_(box),
      plain_(plainLine(fonts.text)),
      lineRoom_(std::min(plain_.ascent + plain_.descent, kTallestLine * fonts.text.pixelSize())),
      unitsInParagraph_(
          unitsIn(mode == LineBreakMode::Clipping ? box.width : box.width * box.height / lineRoom_,
                  fonts.text.pixelSize())) {
  for (qsizetype start = 0; start <= text.size();) {
    const qsizetype end = text.indexOf(u'\n', start);
    const bool last = end < 0;
    if (!setParagraph(text.mid(start, last ? -1 : end - start), last)) return;
    start = last ? text.size() + 1 : end + 1;
  }
}

// Sets the lines that fit below those that are there; says whether the next paragraph may follow.
bool QtTypesetting::setParagraph(const QString& paragraph, bool last) {
  if (unitsLeft_ == 0 && !paragraph.isEmpty()) return false;
  QString shaped = beginning(paragraph, std::min(unitsInParagraph_, unitsLeft_));
  unitsLeft_ -= shaped.size();
  const bool whole = shaped.size() == paragraph.size();
  std::ranges::replace_if(shaped, isBlank, u' ');
  std::vector<TextRun> emoji = emojiRuns(unitsOf(shaped));
  const std::vector<qsizetype> takenOut = takeOutMarks(shaped, emoji);
  auto layout = layoutFor(shaped, emoji);
  const bool rightToLeft = shaped.isRightToLeft();
  qsizetype set = 0;
  layout->beginLayout();
  for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
    line.setLineWidth(mode_ == LineBreakMode::Clipping ? kWithoutEnd : box_.width);
    if (!placeLine(line, rightToLeft)) break;
    set = line.textStart() + line.textLength();
  }
  layout->endLayout();
  const bool complete = set == shaped.size();
  // Cut off is what is too wide, not what is too long to be looked at.
  const bool clippedOnly = complete && mode_ == LineBreakMode::Clipping;
  const bool fits = complete && (whole || clippedOnly);
  for (const qsizetype place : takenOut) set += place <= set ? 1 : 0;
  fittingUnits_ += fits ? paragraph.size() + (last ? 0 : 1) : set;
  paragraphs_.push_back(std::move(layout));
  return fits;
}

std::unique_ptr<QTextLayout> QtTypesetting::layoutFor(const QString& shaped,
                                                      const std::vector<TextRun>& emoji) const {
  auto layout = std::make_unique<QTextLayout>(shaped, fonts_.text);
  layout->setTextOption(optionsFor(mode_));
  layout->setCacheEnabled(true);
  QTextCharFormat format;
  format.setFont(fonts_.emoji);
  QList<QTextLayout::FormatRange> formats;
  for (const TextRun& run : emoji) {
    formats.append({static_cast<int>(run.start), static_cast<int>(run.length), format});
  }
  layout->setFormats(formats);
  return layout;
}

bool QtTypesetting::placeLine(QTextLine line, bool rightToLeft) {
  // A line fits when one of the plain font would: the fonts that stand in for single characters may be taller.
  if (height_ + lineRoom_ > box_.height + kRoundingPt) return false;
  if (mode_ != LineBreakMode::Clipping && line.naturalTextWidth() > box_.width + kRoundingPt) return false;
  // And stands as far from its neighbours as a plain one at least.
  const double ascent = std::max(plain_.ascent, line.ascent());
  const double descent = std::max(plain_.descent, line.descent());
  line.setPosition(QPointF(0, height_ + ascent - line.ascent()));
  width_ = std::max(width_, line.naturalTextWidth());
  height_ += std::ceil(ascent + descent);
  lines_.push_back({line, rightToLeft});
  return true;
}

TextMeasure QtTypesetting::measure() const {
  return {{std::min(width_, box_.width), height_}, static_cast<std::size_t>(fittingUnits_)};
}

void QtTypesetting::paint(QPainter& painter, double room) const {
  for (const auto& [line, rightToLeft] : lines_) {
    const double width = line.naturalTextWidth();
    const bool tooWide = width > room + kRoundingPt;
    painter.save();
    if (tooWide && room >= width * kStrongestSqueeze) {
      painter.scale(room / width, 1);
    } else if (tooWide && rightToLeft) {
      painter.translate(room - width, 0);
    }
    line.draw(&painter, QPointF(0, 0));
    painter.restore();
  }
}

}  // namespace lumivane

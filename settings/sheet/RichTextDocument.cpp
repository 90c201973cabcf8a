#include "settings/sheet/RichTextDocument.h"

#include <QBuffer>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPalette>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>
#include <algorithm>

namespace lumivane {
namespace {

constexpr double kLineHeight = 13;  // points of a line of text in the documents that we read
constexpr int kMostPictureSide = 4096;
constexpr int kLargestAdjustment = 3;  // steps by which the highest heading is larger than the text

class Writer {
 public:
  Writer(QTextDocument& document, const RichText& text, const QPalette& palette)
      : text_(text),
        palette_(palette),
        cursor_(&document),
        scale_(QFontMetricsF(document.defaultFont()).lineSpacing() / kLineHeight),
        fixedFamilies_(QFontDatabase::systemFont(QFontDatabase::FixedFont).families()) {}

  void write() {
    bool first = true;
    for (const RichTextParagraph& paragraph : text_.paragraphs) {
      if (!first) cursor_.insertBlock();
      first = false;
      cursor_.setBlockFormat(blockFormatOf(paragraph));
      cursor_.setBlockCharFormat(QTextCharFormat());
      for (const RichTextSpan& span : paragraph.spans) {
        if (span.picture > 0) {
          insertPicture(span.picture);
          continue;
        }
        cursor_.insertText(QString::fromStdString(span.text), charFormatOf(span, paragraph.headingLevel));
      }
    }
  }

 private:
  // A picture that cannot be read, or is absurdly large, is left out.
  void insertPicture(std::size_t number) {
    if (number > text_.pictures.size()) return;
    const RichTextPicture& picture = text_.pictures[number - 1];
    QByteArray png = QByteArray::fromStdString(picture.png);
    QBuffer bytes(&png);
    QImageReader reader(&bytes, "png");
    if (reader.size().width() > kMostPictureSide || reader.size().height() > kMostPictureSide) return;
    // Scaled here, for the document's own scaling drops pixels.
    const QSizeF shown = QSizeF(picture.width, picture.height) * scale_;
    const double ratio = qApp->devicePixelRatio();
    QImage image = reader.read()
                       .convertToFormat(QImage::Format_ARGB32_Premultiplied)
                       .scaled((shown * ratio).toSize().expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                               Qt::SmoothTransformation);
    if (image.isNull()) return;
    image.setDevicePixelRatio(ratio);
    QTextDocument& document = *cursor_.document();
    const QUrl name(QString("picture:%1").arg(number));
    document.addResource(QTextDocument::ImageResource, name, image);
    QTextImageFormat format;
    format.setName(name.toString());
    format.setWidth(shown.width());
    format.setHeight(shown.height());
    cursor_.insertImage(format);
  }

  [[nodiscard]] QTextBlockFormat blockFormatOf(const RichTextParagraph& paragraph) const {
    QTextBlockFormat format;
    format.setHeadingLevel(paragraph.headingLevel);
    format.setTopMargin(paragraph.spaceBefore * scale_);
    format.setBottomMargin(paragraph.spaceAfter * scale_);
    format.setLeftMargin(paragraph.leftIndent * scale_);
    format.setTextIndent(paragraph.firstLineIndent * scale_);
    QList<QTextOption::Tab> tabs;
    // Qt measures from where the first line begins.
    const double begin = paragraph.leftIndent + paragraph.firstLineIndent;
    for (const double stop : paragraph.tabStops) tabs.append({(stop - begin) * scale_, QTextOption::LeftTab});
    format.setTabPositions(tabs);
    return format;
  }

  [[nodiscard]] QTextCharFormat charFormatOf(const RichTextSpan& span, int headingLevel) const {
    QTextCharFormat format;
    if (span.bold || headingLevel > 0) format.setFontWeight(QFont::Bold);
    format.setFontItalic(span.italic);
    format.setFontUnderline(span.underlined);
    if (span.fixedPitch) format.setFontFamilies(fixedFamilies_);
    if (headingLevel > 0) {
      format.setProperty(QTextFormat::FontSizeAdjustment, std::max(0, kLargestAdjustment + 1 - headingLevel));
    }
    if (span.link > 0 && span.link <= text_.links.size()) {
      format.setAnchor(true);
      format.setAnchorHref(QString::fromStdString(text_.links[span.link - 1]));
      format.setForeground(palette_.link());
    }
    return format;
  }

  const RichText& text_;
  const QPalette& palette_;
  QTextCursor cursor_;
  const double scale_;  // a point of the document in Qt's units
  const QStringList fixedFamilies_;
};

}  // namespace

void showRichText(QTextDocument& document, const RichText& text, const QPalette& palette) {
  document.clear();
  document.setUndoRedoEnabled(false);
  Writer(document, text, palette).write();
}

}  // namespace lumivane

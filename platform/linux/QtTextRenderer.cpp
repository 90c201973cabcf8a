#include "platform/linux/QtTextRenderer.h"

#include <QColor>
#include <QFontInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/PrintableText.h"
#include "platform/linux/QtTypesetting.h"

namespace lumivane {
namespace {

constexpr int kLargestSidePx = 16384;  // what every GL of interest takes as a texture
constexpr std::size_t kBytesPerPixel = 4;

// A layer is made a little larger than its text; half of that goes to the left and above.
constexpr double kInsetX = 0.15;  // times the font size
constexpr double kInsetY = 0.10;

void logChoice(Log& log, const std::string& family) {
  const std::string wanted = kWantedFont;
  if (family.empty()) log.error("Could not find font " + wanted + "!");
  if (family.empty() || family == wanted) return;
  log.information(wanted + " is not installed, text is set in " + printable(family));
}

QString qtText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QStringList families(std::initializer_list<std::string> names) {
  QStringList list;
  for (const std::string& name : names) {
    if (!name.empty()) list.append(qtText(name));
  }
  return list;
}

TypesettingFonts fontsFor(const TextStyle& style, const TextFonts& fonts) {
  QStringList text = families({fonts.fixedWidth, fonts.proportional});
  double size = style.fontSizePt;
  double kerning = style.kerningPt;
  if (!style.styled || fonts.fixedWidth.empty()) {
    const QFont plain = QGuiApplication::font();
    text = plain.families();
    size = QFontInfo(plain).pixelSize();
    kerning = 0;
  }
  return {makeFont(text, size, kerning), makeFont(families({fonts.emoji}) + text, size, kerning)};
}

QColor colorFor(const TextStyle& style) {
  if (!style.styled) return QGuiApplication::palette().color(QPalette::WindowText);
  const auto part = [](float value) { return std::isfinite(value) ? std::clamp(value, 0.0F, 1.0F) : 0.0F; };
  return QColor::fromRgbF(part(style.color.red), part(style.color.green), part(style.color.blue),
                          part(style.color.alpha));
}

int sidePx(double points, double scale) {
  const double pixels = std::ceil(points * scale - 1e-6);
  return std::isfinite(pixels) ? static_cast<int>(std::clamp(pixels, 1.0, double{kLargestSidePx})) : 1;
}

// To the next whole pixel.
double snapped(double points, double scale) {
  return std::round(points * scale) / scale;
}

}  // namespace

QtTextRenderer::QtTextRenderer(Log& log, TextFonts fonts) : fonts_(std::move(fonts)) {
  logChoice(log, fonts_.fixedWidth);
}

TextMeasure QtTextRenderer::measure(std::string_view utf8, const TextStyle& style, SizePt box) const {
  return QtTypesetting(qtText(utf8), fontsFor(style, fonts_), style.lineBreakMode, box).measure();
}

BitmapRef QtTextRenderer::render(std::string_view utf8, const TextStyle& style, SizePt size,
                                 double scale) const {
  const SizePx pixels{sidePx(size.width, scale), sidePx(size.height, scale)};
  const std::size_t stride = static_cast<std::size_t>(pixels.width) * kBytesPerPixel;
  PixelBuffer buffer = PixelBuffer::allocate(stride * static_cast<std::size_t>(pixels.height));
  QImage image(reinterpret_cast<uchar*>(buffer.bytes().data()), pixels.width, pixels.height,
               static_cast<qsizetype>(stride), QImage::Format_RGBA8888_Premultiplied);
  const QtTypesetting text(qtText(utf8), fontsFor(style, fonts_), style.lineBreakMode, size);
  const double insetX = kInsetX * style.fontSizePt;
  QPainter painter(&image);
  painter.scale(scale, scale);
  painter.translate(snapped(insetX, scale), snapped(kInsetY * style.fontSizePt, scale));
  painter.setPen(colorFor(style));
  text.paint(painter, size.width - 2 * insetX);
  painter.end();
  return std::make_shared<const Bitmap>(std::move(buffer), std::vector<BitmapLevel>{{0, pixels, stride}}, 1,
                                        false);
}

}  // namespace lumivane

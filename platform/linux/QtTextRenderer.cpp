#include "platform/linux/QtTextRenderer.h"

#include <QColor>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <cmath>

#include "platform/linux/QtTypesetting.h"

namespace lumivane {
namespace {

constexpr auto kWantedFamily = "Andale Mono";
constexpr int kLargestSidePx = 16384;  // what every GL of interest takes as a texture
constexpr std::size_t kBytesPerPixel = 4;

// A layer is made a little larger than its text; that much of it at most goes to the left and above.
constexpr double kInsetX = 0.15;  // times the font size
constexpr double kInsetY = 0.10;

bool isFixedWidth(const QFont& font) {
  return QFontInfo(font).fixedPitch();
}

QString chooseFamily() {
  const QString wanted = QString::fromLatin1(kWantedFamily);
  if (QFontDatabase::families().contains(wanted)) return wanted;
  const QFont desktops = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (isFixedWidth(desktops)) return QFontInfo(desktops).family();
  QFont any(QStringLiteral("monospace"));
  any.setStyleHint(QFont::Monospace);
  return isFixedWidth(any) ? QFontInfo(any).family() : QString();
}

QString qtText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QFont fontFor(const TextStyle& style, const QString& family) {
  if (style.styled && !family.isEmpty())
    return typesettingFont(QFont(family), style.fontSizePt, style.kerningPt);
  const QFont plain = QGuiApplication::font();
  return typesettingFont(plain, QFontInfo(plain).pixelSize(), 0);
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

double inset(double room, double text, double most) {
  return std::clamp((room - text) / 2, 0.0, most);
}

}  // namespace

QtTextRenderer::QtTextRenderer(Log& log) : family_(chooseFamily()) {
  if (family_.isEmpty() || family_ == QLatin1String(kWantedFamily)) return;
  log.information(std::string(kWantedFamily) + " is not installed, text is set in " + family_.toStdString());
}

TextMeasure QtTextRenderer::measure(std::string_view utf8, const TextStyle& style, SizePt box) const {
  return QtTypesetting(qtText(utf8), fontFor(style, family_), style.lineBreakMode, box).measure();
}

BitmapRef QtTextRenderer::render(std::string_view utf8, const TextStyle& style, SizePt size,
                                 double scale) const {
  const SizePx pixels{sidePx(size.width, scale), sidePx(size.height, scale)};
  const std::size_t stride = static_cast<std::size_t>(pixels.width) * kBytesPerPixel;
  PixelBuffer buffer = PixelBuffer::allocate(stride * static_cast<std::size_t>(pixels.height));
  QImage image(reinterpret_cast<uchar*>(buffer.bytes().data()), pixels.width, pixels.height,
               static_cast<qsizetype>(stride), QImage::Format_RGBA8888_Premultiplied);
  const QtTypesetting text(qtText(utf8), fontFor(style, family_), style.lineBreakMode, size);
  const SizePt taken = text.measure().size;
  QPainter painter(&image);
  painter.scale(scale, scale);
  painter.translate(inset(size.width, taken.width, kInsetX * style.fontSizePt),
                    inset(size.height, taken.height, kInsetY * style.fontSizePt));
  painter.setPen(colorFor(style));
  text.paint(painter);
  painter.end();
  return std::make_shared<const Bitmap>(std::move(buffer), std::vector<BitmapLevel>{{0, pixels, stride}}, 1,
                                        false);
}

}  // namespace lumivane

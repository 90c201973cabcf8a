#include "imaging/TextLayout.h"

#include <algorithm>
#include <array>

namespace lumivane {
namespace {

constexpr double kSqueezedKerningPt = -1.5;
constexpr double kOneLine = 1.5;      // times the font size: tall enough for one line, not for two
constexpr double kMarginWidth = 0.3;  // times the font size
constexpr double kMarginHeight = 0.2;
constexpr std::string_view kEllipsis = "..";

// Messages that are left to wrap: their whole text matters.
constexpr std::array<std::string_view, 5> kWrappingMessages = {
    "Image gone", "Change pics", "Several images in a row", "Can't delete", "Rescan the pictures"};

std::size_t utf16Units(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if (byte >= 0xF0) return 2;
  return (byte & 0xC0U) == 0x80U ? 0 : 1;
}

std::size_t utf16Length(std::string_view utf8) {
  std::size_t units = 0;
  for (const char c : utf8) units += utf16Units(c);
  return units;
}

// The text from the given UTF-16 position on, never starting inside a character.
std::string_view fromUtf16Position(std::string_view utf8, std::size_t position) {
  std::size_t units = 0;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const std::size_t width = utf16Units(utf8[i]);
    if (width != 0 && units >= position) return utf8.substr(i);
    units += width;
  }
  return {};
}

bool isLeftToWrap(std::string_view text) {
  return std::any_of(kWrappingMessages.begin(), kWrappingMessages.end(),
                     [text](std::string_view beginning) { return text.starts_with(beginning); });
}

void adjustToWidth(const TextRenderer& renderer, const TextLayoutRequest& request, TextLayout& layout) {
  const std::string_view firstLine = request.text.substr(0, request.text.find('\n'));
  const std::size_t length = utf16Length(firstLine);
  const SizePt oneLine{request.screen.width, kOneLine * request.fontSizePt};
  TextStyle style = layout.style;
  style.lineBreakMode = LineBreakMode::CharacterWrapping;
  const auto fitting = [&] { return renderer.measure(firstLine, style, oneLine).fittingUtf16Units; };

  if (fitting() < length) style.kerningPt = kSqueezedKerningPt;
  if (!isLeftToWrap(request.text)) {
    const std::size_t squeezed = fitting();
    if (squeezed < length && squeezed > 3 && request.showImagePath) {
      style.kerningPt = 0;
      const std::size_t plain = fitting();
      layout.text = std::string(kEllipsis);
      layout.text += fromUtf16Position(request.text, length - plain + 3);
    }
  }
  layout.style.kerningPt = style.kerningPt;
}

}  // namespace

TextLayout layOutText(const TextRenderer& renderer, const TextLayoutRequest& request) {
  TextLayout layout;
  layout.text = request.text;
  layout.style.fontSizePt = request.fontSizePt;
  layout.style.styled = renderer.fontAvailable();
  if (request.adjustWidth) adjustToWidth(renderer, request, layout);
  const SizePt size = renderer.measure(layout.text, layout.style, request.screen).size;
  layout.bounds.size = {size.width + kMarginWidth * request.fontSizePt,
                        size.height + kMarginHeight * request.fontSizePt};
  return layout;
}

}  // namespace lumivane

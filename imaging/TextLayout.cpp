#include "imaging/TextLayout.h"

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string_view>

namespace lumivane {
namespace {

constexpr double kSqueezedKerningPt = -1.5;
constexpr double kOneLine = 1.5;      // times the font size: tall enough for one line, not for two
constexpr double kMarginWidth = 0.3;  // times the font size
constexpr double kMarginHeight = 0.2;
constexpr const char16_t* kEllipsis = u"..";
constexpr int kLeastWorthShortening = 3;  // characters

// Messages that are left to wrap: their whole text matters.
constexpr std::array<std::string_view, 5> kWrappingMessages = {
    "Image gone", "Change pics", "Several images in a row", "Can't delete", "Rescan the pictures"};

// Counted as the renderer counts: both see a replacement character where bytes are no UTF-8.
icu::UnicodeString utf16(std::string_view utf8) {
  const std::size_t length = std::min<std::size_t>(utf8.size(), std::numeric_limits<std::int32_t>::max());
  return icu::UnicodeString::fromUTF8({utf8.data(), static_cast<std::int32_t>(length)});
}

std::string utf8(const icu::UnicodeString& utf16Text) {
  std::string text;
  utf16Text.toUTF8String(text);
  return text;
}

// The text from a position on, or from the next one that splits nothing that is seen as one character.
icu::UnicodeString tailFrom(const icu::UnicodeString& text, std::int32_t position) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> characters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  if (U_SUCCESS(status)) {
    characters->setText(text);
    if (!characters->isBoundary(position)) position = characters->following(position);
  }
  return text.tempSubString(position);
}

bool isLeftToWrap(std::string_view text) {
  return std::any_of(kWrappingMessages.begin(), kWrappingMessages.end(),
                     [text](std::string_view beginning) { return text.starts_with(beginning); });
}

std::int32_t firstLineLength(const icu::UnicodeString& text) {
  const std::int32_t lineEnd = text.indexOf(u'\n');
  return lineEnd < 0 ? text.length() : lineEnd;
}

// How much of the first line fits into one line of the screen.
class FirstLine {
 public:
  FirstLine(const TextRenderer& renderer, const TextLayoutRequest& request)
      : renderer_(renderer), box_{request.screen.width, kOneLine * request.fontSizePt} {}

  [[nodiscard]] std::int32_t fitting(const icu::UnicodeString& text, TextStyle style) const {
    style.lineBreakMode = LineBreakMode::CharacterWrapping;
    const std::string line = utf8(text.tempSubString(0, firstLineLength(text)));
    return static_cast<std::int32_t>(renderer_.measure(line, style, box_).fittingUtf16Units);
  }

 private:
  const TextRenderer& renderer_;
  const SizePt box_;
};

// The first line without its beginning. What fits is counted from the beginning: of characters that are not all of the
// same width the end may take more room, and gives up more.
icu::UnicodeString shortened(const icu::UnicodeString& text, const FirstLine& firstLine,
                             const TextStyle& style) {
  const std::int32_t length = firstLineLength(text);
  std::int32_t position = length - firstLine.fitting(text, style) + kLeastWorthShortening;
  for (;;) {
    // The line end stays, even where so little fits that nothing of the line does beside the dots.
    position = std::min(position, length);
    icu::UnicodeString tail = icu::UnicodeString(kEllipsis).append(tailFrom(text, position));
    const std::int32_t missing = firstLineLength(tail) - firstLine.fitting(tail, style);
    if (missing <= 0 || position == length) return tail;
    position += missing;
  }
}

void adjustToWidth(const TextRenderer& renderer, const TextLayoutRequest& request, TextLayout& layout) {
  const icu::UnicodeString text = utf16(layout.text);
  const std::int32_t length = firstLineLength(text);
  const FirstLine firstLine(renderer, request);
  if (firstLine.fitting(text, layout.style) < length) layout.style.kerningPt = kSqueezedKerningPt;
  if (isLeftToWrap(layout.text)) return;
  const std::int32_t squeezed = firstLine.fitting(text, layout.style);
  if (squeezed >= length || squeezed <= kLeastWorthShortening || !request.showImagePath) return;
  layout.style.kerningPt = 0;
  layout.text = utf8(shortened(text, firstLine, layout.style));
}

}  // namespace

TextLayout layOutText(const TextRenderer& renderer, const TextLayoutRequest& request) {
  TextLayout layout;
  layout.text = utf8(utf16(request.text));
  layout.style.fontSizePt = request.fontSizePt;
  layout.style.styled = renderer.fontAvailable();
  if (request.adjustWidth) adjustToWidth(renderer, request, layout);
  const SizePt size = renderer.measure(layout.text, layout.style, request.screen).size;
  layout.bounds.size = {size.width + kMarginWidth * request.fontSizePt,
                        size.height + kMarginHeight * request.fontSizePt};
  return layout;
}

}  // namespace lumivane

#include "platform/linux/QtTextRenderer.h"

#include <cmath>

#include "tests/platform/TextPixels.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

constexpr SizePt kScreen{1280, 800};
constexpr double kNear = 0.02;

class QtTextRendererTest : public ::testing::Test {
 protected:
  [[nodiscard]] TextMeasure measure(std::string_view text, TextStyle style = {}, SizePt box = kScreen) const {
    return renderer_.measure(text, style, box);
  }
  [[nodiscard]] TextStyle wrapping(double fontSizePt = 20) const {
    return {.fontSizePt = fontSizePt, .lineBreakMode = LineBreakMode::CharacterWrapping};
  }
  // How wide one character of the fixed-width font is.
  [[nodiscard]] double cell(const TextStyle& style = {}) const {
    return (widthOf(std::string(51, 'x'), style) - widthOf("x", style)) / 50;
  }
  [[nodiscard]] double widthOf(std::string_view text, const TextStyle& style = {}) const {
    return measure(text, style, {1e5, 100}).size.width;
  }

  RecordingLog log_;
  QtTextRenderer renderer_{log_, kTestFonts};
};

TEST_F(QtTextRendererTest, CharactersAreOfOneWidth) {
  ASSERT_TRUE(renderer_.fontAvailable());
  EXPECT_NEAR(widthOf("iiiix"), widthOf("WWWWx"), kNear);
}

TEST_F(QtTextRendererTest, SaysOnceWhichFontStandsIn) {
  RecordingLog log;
  const QtTextRenderer renderer(log, {"DejaVu Sans Mono", "", ""});
  for (int i = 0; i < 3; ++i) static_cast<void>(renderer.measure("abc", {}, kScreen));
  EXPECT_TRUE(
      log.has("Andale Mono is not installed, text is set in DejaVu Sans Mono", LogLevel::Information));
  EXPECT_EQ(log.entries().size(), 1U);
}

TEST_F(QtTextRendererTest, SaysNothingOfTheWantedFont) {
  RecordingLog log;
  const QtTextRenderer renderer(log, {"Andale Mono", "", ""});
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(QtTextRendererTest, WithoutAnyFixedWidthFontTextIsPlain) {
  RecordingLog log;
  const QtTextRenderer renderer(log, TextFonts{});
  EXPECT_FALSE(renderer.fontAvailable());
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(renderer.measure("abc", {.fontSizePt = 80}, kScreen).size,
              renderer_.measure("abc", {.styled = false}, kScreen).size);
  }
  EXPECT_TRUE(log.has("Could not find font Andale Mono!", LogLevel::Error));
  EXPECT_EQ(log.entries().size(), 1U);
}

TEST_F(QtTextRendererTest, MeasuresInPoints) {
  EXPECT_NEAR(cell({.fontSizePt = 40}), 2 * cell({.fontSizePt = 20}), kNear);
  EXPECT_NEAR(cell({.fontSizePt = 10.2}), 0.5 * cell({.fontSizePt = 20}), kNear);
  // Fixed-width fonts are about 0.6 times as wide as they are high.
  EXPECT_NEAR(cell({.fontSizePt = 20}), 12, 1.5);
  const double line = measure("x").size.height;
  EXPECT_GT(line, 20);
  EXPECT_LT(line, 30);
  EXPECT_NEAR(measure("x\ny\nz").size.height, 3 * line, kNear);
}

TEST_F(QtTextRendererTest, EverythingFitsIntoALargeBox) {
  EXPECT_EQ(measure("").fittingUtf16Units, 0U);
  EXPECT_EQ(measure("abc").fittingUtf16Units, 3U);
  EXPECT_EQ(measure("one\ntwo\n").fittingUtf16Units, 8U);
  EXPECT_EQ(measure("\n\n").fittingUtf16Units, 2U);
  EXPECT_EQ(measure("ä€😀").fittingUtf16Units, 4U);
  EXPECT_EQ(measure("abc", wrapping()).fittingUtf16Units, 3U);
}

TEST_F(QtTextRendererTest, ABlankLineIsAsHighAsAnyOther) {
  EXPECT_NEAR(measure(" ").size.height, measure("x").size.height, kNear);
  EXPECT_NEAR(measure("a\n\nb").size.height, 3 * measure("a").size.height, kNear);
}

TEST_F(QtTextRendererTest, ClippingKeepsOneLineALineAndTheBoxsWidth) {
  const std::string text(1000, 'x');
  const TextMeasure measured = measure(text, {}, {200, 100});
  EXPECT_EQ(measured.size.width, 200);
  EXPECT_NEAR(measured.size.height, measure("x").size.height, kNear);
  EXPECT_EQ(measured.fittingUtf16Units, text.size());
}

TEST_F(QtTextRendererTest, ClippingCountsOnlyTheLinesThatFit) {
  const double line = measure("x").size.height;
  const TextMeasure measured = measure("one\ntwo\nthree", {}, {500, 2.5 * line});
  EXPECT_EQ(measured.fittingUtf16Units, 8U);
  EXPECT_NEAR(measured.size.height, 2 * line, kNear);
  EXPECT_EQ(measure("one", {}, {500, line / 2}).fittingUtf16Units, 0U);
}

TEST_F(QtTextRendererTest, WrappingTellsHowMuchFitsOnOneLine) {
  const std::string text(100, 'x');
  const SizePt oneLine{10.5 * cell(), 1.5 * 20};
  EXPECT_EQ(measure(text, wrapping(), oneLine).fittingUtf16Units, 10U);
  EXPECT_EQ(measure(text, wrapping(), {100 * cell() + 1, 1.5 * 20}).fittingUtf16Units, 100U);
  EXPECT_EQ(measure(text, wrapping(), {10.5 * cell(), 2.5 * 25}).fittingUtf16Units, 20U);
}

TEST_F(QtTextRendererTest, WrappingBreaksInsideWords) {
  EXPECT_EQ(measure("aa bbbbbbbbbbbb", wrapping(), {8.5 * cell(), 30}).fittingUtf16Units, 8U);
}

TEST_F(QtTextRendererTest, NegativeKerningMakesMoreFit) {
  TextStyle squeezed = wrapping();
  squeezed.kerningPt = -1.5;
  EXPECT_NEAR(cell() - cell(squeezed), 1.5, kNear);
  const SizePt box{50 * cell(), 30};
  const std::string text(100, 'x');
  EXPECT_EQ(measure(text, wrapping(), box).fittingUtf16Units, 50U);
  EXPECT_GT(measure(text, squeezed, box).fittingUtf16Units, 53U);
}

TEST_F(QtTextRendererTest, NeverSplitsWhatIsSeenAsOneCharacter) {
  const std::string combined = "x\xCC\x81";         // x and a combining acute: 2 units
  const std::string family = "👩‍👩‍👧";  // 8 units
  const std::string flag = "🇩🇪";                    // 4 units
  for (const auto& [text, units] : std::vector<std::pair<std::string, std::size_t>>{
           {combined, 2}, {family, 8}, {flag, 4}, {"😀", 2}, {"क्षि", 4}}) {
    std::string many;
    for (int i = 0; i < 60; ++i) many += text;
    for (double width = 30; width < 120; width += 7) {
      const std::size_t fits = measure(many, wrapping(), {width, 30}).fittingUtf16Units;
      EXPECT_EQ(fits % units, 0U) << text << " at " << width;
    }
  }
}

TEST_F(QtTextRendererTest, InvalidUtf8IsShownAsReplacementCharacters) {
  EXPECT_EQ(measure("a\xFFz").fittingUtf16Units, 3U);
}

TEST_F(QtTextRendererTest, ControlCharactersAreBlanks) {
  EXPECT_EQ(measure("a\x7F\x01\xC2\x85z").fittingUtf16Units, 5U);
  EXPECT_NEAR(widthOf("a\x7F\x01\xC2\x85z"), widthOf("a   z"), kNear);
  const BitmapRef bitmap = renderer_.render("\x7F\xC2\x85\x1B", {}, {60, 30}, 1);
  EXPECT_TRUE(inkOf(*bitmap).isEmpty());
}

TEST_F(QtTextRendererTest, OnlyTheLineFeedEndsALine) {
  const double line = measure("x").size.height;
  EXPECT_NEAR(measure("a\rb\xE2\x80\xA8"
                      "c\xE2\x80\xA9"
                      "d")
                  .size.height,
              line, kNear);
}

TEST_F(QtTextRendererTest, AnEndlessTextCostsNoMoreThanWhatCanBeSeen) {
  std::string text(6'000'000, 'x');
  text[3'000'000] = '\n';
  EXPECT_EQ(measure(text, wrapping(), {500, 30}).fittingUtf16Units, static_cast<std::size_t>(500 / cell()));
  EXPECT_LE(measure(text, wrapping(), {1e6, 1e6}).fittingUtf16Units, 20'000U);
  EXPECT_EQ(measure(text, {}, {500, 24}).size.width, 500);
  std::string lines;
  for (int i = 0; i < 100'000; ++i) lines += "xxxxxxxxx\n";
  EXPECT_LE(measure(lines, {.fontSizePt = 1}, {1e6, 1e6}).fittingUtf16Units, 20'000U);
}

TEST_F(QtTextRendererTest, TheNarrowestLettersStillFillTheLine) {
  for (const char* letter : {"i", "l", "ا", ".", "\xE0\xB8\xA5\xE0\xB8\xB4\xE0\xB9\x88"}) {
    std::string text;
    for (int i = 0; i < 3000; ++i) text += letter;
    EXPECT_EQ(measure(text, {}, {1920, 24}).size.width, 1920) << letter;
  }
}

TEST_F(QtTextRendererTest, NonsenseSizesDoNoHarm) {
  for (const double size : {0.0, -5.0, 0.3}) {
    EXPECT_LE(measure("abc", wrapping(size), {100, 100}).fittingUtf16Units, 3U);
    EXPECT_EQ(measure("abc", wrapping(), {size, 100}).fittingUtf16Units, 0U);
    EXPECT_EQ(renderer_.render("abc", {}, {size, size}, 1)->storedSize(), (SizePx{1, 1}));
  }
  EXPECT_EQ(renderer_.render("abc", {}, {1e9, 1}, 1)->storedSize().width, 16384);
  EXPECT_EQ(renderer_.render("abc", {}, {10, 10}, std::nan(""))->storedSize(), (SizePx{1, 1}));
}

TEST_F(QtTextRendererTest, RendersIntoTheLayersSizeInPixels) {
  const BitmapRef bitmap = renderer_.render("abc", {}, {100.5, 30}, 2);
  EXPECT_EQ(bitmap->storedSize(), (SizePx{201, 60}));
  EXPECT_FALSE(bitmap->opaque());
  EXPECT_EQ(bitmap->orientation(), 1);
  EXPECT_EQ(bitmap->levels().size(), 1U);
  EXPECT_EQ(pixelAt(*bitmap, 200, 0).alpha, 0);
  EXPECT_FALSE(inkOf(*bitmap).isEmpty());
}

TEST_F(QtTextRendererTest, ColoursAreRedGreenBlueAlphaPremultiplied) {
  const TextStyle style{.fontSizePt = 60, .color = {1, 0.5F, 0, 0.5F}};
  const BitmapRef bitmap = renderer_.render("██", style, {80, 80}, 1);
  const Pixel middle = pixelAt(*bitmap, 40, 40);
  EXPECT_NEAR(middle.alpha, 128, 1);
  EXPECT_NEAR(middle.red, 128, 2);
  EXPECT_NEAR(middle.green, 64, 2);
  EXPECT_EQ(middle.blue, 0);
}

TEST_F(QtTextRendererTest, HasNoColouredFringes) {
  const BitmapRef bitmap = renderer_.render("HIlW", {}, {60, 30}, 1);
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 60; ++x) {
      const Pixel pixel = pixelAt(*bitmap, x, y);
      ASSERT_EQ(pixel.red, pixel.green);
      ASSERT_EQ(pixel.red, pixel.blue);
      ASSERT_EQ(pixel.red, pixel.alpha);
    }
  }
}

TEST_F(QtTextRendererTest, IsSharpAtEveryScale) {
  const QRect once = inkOf(*renderer_.render("Hg", {}, {60, 30}, 1));
  const BitmapRef large = renderer_.render("Hg", {}, {60, 30}, 3);
  const QRect thrice = inkOf(*large);
  EXPECT_NEAR(thrice.width(), 3 * once.width(), 4);
  EXPECT_NEAR(thrice.height(), 3 * once.height(), 4);
  // Enlarged pixels would come in threes; in a sharp picture edges are one pixel wide.
  int halfCovered = 0;
  int covered = 0;
  for (int x = 0; x < 180; ++x) {
    const int alpha = pixelAt(*large, x, thrice.center().y() - 3).alpha;
    covered += alpha > 250 ? 1 : 0;
    halfCovered += alpha > 5 && alpha <= 250 ? 1 : 0;
  }
  EXPECT_GT(covered, 6);
  EXPECT_LE(halfCovered, 10);
}

TEST_F(QtTextRendererTest, StandsInTheUpperLeftCornerWithHalfThePadding) {
  const TextMeasure measured = measure("█\n█");
  const SizePt layer{measured.size.width + 0.3 * 20, measured.size.height + 0.2 * 20};
  const QRect ink = inkOf(*renderer_.render("█\n█", {}, layer, 1));
  EXPECT_NEAR(ink.left(), 3, 1);
  EXPECT_NEAR(ink.top(), 2, 2);
  const QRect inLargeLayer = inkOf(*renderer_.render("█\n█", {}, {800, 600}, 1));
  EXPECT_EQ(inLargeLayer.topLeft(), ink.topLeft());
}

TEST_F(QtTextRendererTest, AnEmptyTextIsTransparent) {
  EXPECT_TRUE(inkOf(*renderer_.render("", {}, {50, 20}, 1)).isEmpty());
  EXPECT_TRUE(inkOf(*renderer_.render(" ", {}, {50, 20}, 1)).isEmpty());
}

TEST_F(QtTextRendererTest, UnstyledTextIgnoresFontSizeAndColour) {
  const TextStyle large{.fontSizePt = 80, .styled = false};
  const TextStyle small{.fontSizePt = 8, .styled = false};
  EXPECT_EQ(measure("abc", large).size, measure("abc", small).size);
}

TEST_F(QtTextRendererTest, LinesBelowTheLayerAreNotDrawn) {
  const double line = measure("x").size.height;
  const QRect ink = inkOf(*renderer_.render("█\n█\n█████", {}, {200, 2 * line + 4}, 1));
  EXPECT_NEAR(ink.width(), cell(), 2);
  EXPECT_NEAR(ink.height(), 2 * line, 3);
}

// A line as wide as the screen begins some points to the right of the screen's edge.
TEST_F(QtTextRendererTest, ALineThatIsALittleTooWideIsSqueezed) {
  std::string text(49, 'x');
  text += "█";
  const double room = widthOf(text) - 12;
  const QRect ink = inkOf(*renderer_.render(text, {}, {room + 6, 30}, 1));
  EXPECT_NEAR(ink.left(), 3, 1);
  EXPECT_NEAR(ink.right(), 3 + room, 2);
  const QRect whole = inkOf(*renderer_.render(text, {}, {room + 6 + 12, 30}, 1));
  EXPECT_NEAR(whole.right(), 3 + room + 12, 2);
}

TEST_F(QtTextRendererTest, ALineThatIsMuchTooWideIsCutOff) {
  std::string text = "█";
  text.append(60, 'x').append("█");
  const BitmapRef bitmap = renderer_.render(text, {}, {300, 30}, 1);
  const QRect ink = inkOf(*bitmap);
  EXPECT_NEAR(ink.left(), 3, 1);
  EXPECT_GT(ink.right(), 290);
  EXPECT_EQ(pixelAt(*bitmap, 3 + static_cast<int>(cell() / 2), 12).alpha, 255);
  EXPECT_LT(pixelAt(*bitmap, 295, 4).alpha, 255);
}

}  // namespace
}  // namespace lumivane

// What the information line has to cope with: all scripts, emoji, both directions, and the whole way from a request
// to a bitmap.
#include "imaging/LayerText.h"
#include "platform/linux/QtTextRenderer.h"
#include "tests/platform/TextPixels.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

constexpr double kNear = 0.02;

class QtTextScriptsTest : public testing::Test {
 protected:
  [[nodiscard]] double widthOf(const std::string& text, const TextStyle& style = {}) const {
    return renderer_.measure(text, style, {1e5, 100}).size.width;
  }
  [[nodiscard]] BitmapRef drawn(const std::string& text, SizePt size = {200, 40}) const {
    return renderer_.render(text, {}, size, 1);
  }
  // The first so many UTF-16 units of valid UTF-8.
  [[nodiscard]] static std::string beginning(const std::string& utf8, std::size_t units) {
    std::size_t at = 0;
    for (std::size_t seen = 0; at < utf8.size(); ++at) {
      const auto byte = static_cast<unsigned char>(utf8[at]);
      if ((byte & 0xC0U) == 0x80U) continue;
      if (seen >= units) break;
      seen += byte >= 0xF0 ? 2 : 1;
    }
    return utf8.substr(0, at);
  }

  RecordingLog log_;
  QtTextRenderer renderer_{log_, kTestFonts};
};

const std::vector<std::string> kScripts = {
    "/home/me/Pictures/2019/Summer holidays at the sea/IMG_1234 and some more of it to fill the line.jpg",
    "/写真/東京の桜、春の朝に撮影した写真です。カメラ: ニコン D850/北京故宫的雪景/서울의 가을 단풍/経路.jpg",
    "/صور/غروب الشمس على شاطئ البحر في الإسكندرية 2023/שקיעה בחוף תל אביב, Canon EOS 5D/עוד תיקייה.jpg",
    "/चित्र/सूर्यास्त के समय गंगा का किनारा, क्षत्रिय हिन्दी/พระอาทิตย์ตกที่ชายหาดภูเก็ต น้ำใจดีที่สุด/xxxxxxxxxxxx.jpg",
    "/😀👩‍👩‍👧‍👦🇩🇪👍🏽/1️⃣2️⃣3️⃣ Cafe\u0301 Zu\u0308rich "
    "Vie\u0302\u0323t"
    "/ and so on and so on until it is much too long.jpg"};

TEST_F(QtTextScriptsTest, whatIsSaidToFitFits) {
  for (const std::string& text : kScripts) {
    for (const double kerning : {0.0, -1.5}) {
      for (double width = 60; width < 900; width += 37) {
        TextStyle style{.kerningPt = kerning, .lineBreakMode = LineBreakMode::CharacterWrapping};
        const std::size_t fits = renderer_.measure(text, style, {width, 30}).fittingUtf16Units;
        style.lineBreakMode = LineBreakMode::Clipping;
        std::string line = beginning(text, fits);
        if (line.ends_with(' ')) line.pop_back();  // one that ends a line takes no room
        ASSERT_LE(widthOf(line, style), width + kNear) << text << " in " << width;
      }
    }
  }
}

TEST_F(QtTextScriptsTest, aShortenedPathFitsTheScreenWithItsEnd) {
  for (const std::string& text : kScripts) {
    for (const double fontSize : {10.0, 20.0, 33.0, 48.0}) {
      const TextLayoutRequest request{text + text + text + text, fontSize, {1280, 800}, true, true};
      const TextLayout layout = layOutText(renderer_, request);
      ASSERT_TRUE(layout.text.starts_with("..")) << text;
      ASSERT_TRUE(layout.text.ends_with(".jpg"));
      ASSERT_LE(renderer_.measure(layout.text, layout.style, {1e5, 100}).size.width, 1280) << layout.text;
      ASSERT_LE(layout.bounds.size.width, 1280 + 0.3 * fontSize);
    }
  }
}

// The layer begins 7 or 14 points from the left edge of the screen; what fits the screen must not lose its end for that.
TEST_F(QtTextScriptsTest, theLastCharacterOfALineThatFitsIsOnTheScreen) {
  for (const auto& [width, margin] : {std::pair{640.0, 7.0}, {1280.0, 7.0}, {1600.0, 14.0}, {1920.0, 14.0}}) {
    for (const double fontSize : {10.0, 20.0, 48.0}) {
      const TextStyle style{.fontSizePt = fontSize};
      const double cell = (widthOf(std::string(51, 'x'), style) - widthOf("x", style)) / 50;
      std::string text(static_cast<std::size_t>(width / cell) - 1, 'x');
      text += "█";
      Layer layer;
      layer.edit([margin = margin](LayerProperties& p) {
        p.anchorPoint = {0, 0};
        p.position = {margin, margin};
      });
      LayerText shown;
      shown.set(layer, renderer_, {text, fontSize, {width, 1000}, true, true}, 1);
      const Bitmap& bitmap = *layer.properties().contents;
      const int middle = bitmap.storedSize().height / 2;
      const QRect ink = inkOf(bitmap);
      ASSERT_LT(ink.right(), bitmap.storedSize().width - 1) << fontSize << " on " << width;
      ASSERT_EQ(pixelAt(bitmap, ink.right() - 2, middle).alpha, 255) << "the block at the end";
      ASSERT_EQ(pixelAt(bitmap, ink.right() - static_cast<int>(cell * 0.7), middle).alpha, 255);
    }
  }
}

TEST_F(QtTextScriptsTest, emojiAreColouredAndOneEach) {
  const double one = widthOf("🦊");
  for (const char* emoji : {"😀", "❤️", "☀️", "👩‍🚀", "🏳️‍🌈", "🇩🇪", "👍🏽",
                            "1️⃣", "✈️", "🏴󠁧󠁢󠁥󠁮󠁧󠁿"}) {
    EXPECT_NEAR(widthOf(emoji), one, kNear) << emoji;
    const BitmapRef bitmap = drawn(emoji);
    EXPECT_GT(colouredPixels(*bitmap), 20) << emoji;
    const QRect ink = inkOf(*bitmap);
    EXPECT_GT(ink.height(), 10) << emoji;
    EXPECT_GT(ink.top(), 0) << emoji;
  }
}

TEST_F(QtTextScriptsTest, emojiLeaveTheTextAroundThemAsItIs) {
  EXPECT_NEAR(widthOf("ab😀cd"), 4 * (widthOf("xx") - widthOf("x")) + widthOf("😀"), 0.5);
  EXPECT_EQ(colouredPixels(*drawn("☀ ❤ 1 # ✈")), 0);
}

// Where the font of fixed width has no glyph, the desktop's usual font comes first, not just any that has one.
TEST_F(QtTextScriptsTest, aCharacterThatIsMissingComesFromTheUsualFont) {
  const QtTextRenderer usual(log_, {kTestFonts.proportional, "", ""});
  EXPECT_NEAR(widthOf("Ǻ"), usual.measure("Ǻ", {}, {1e5, 100}).size.width, kNear);
}

// No script may be a row of boxes.
TEST_F(QtTextScriptsTest, thereIsAFontForEveryScript) {
  const double missing = widthOf("\U000F1234");  // nobody's character
  for (const char* letter : {"語", "汉", "한", "ع", "ש", "क", "ไ", "த", "ঐ", "ქ", "Ж", "ლ", "አ", "ខ"}) {
    const BitmapRef first = drawn(letter);
    const BitmapRef box = drawn("\U000F1234");
    EXPECT_FALSE(widthOf(letter) == missing && inkOf(*first) == inkOf(*box)) << letter;
  }
}

TEST_F(QtTextScriptsTest, aLineReadFromTheRightKeepsItsBeginning) {
  std::string hebrew = "█";
  for (int i = 0; i < 40; ++i) hebrew += "שלום ";
  const BitmapRef bitmap = drawn(hebrew, {300, 30});
  const int cell = static_cast<int>(widthOf("█"));
  EXPECT_EQ(pixelAt(*bitmap, 300 - 3 - cell / 2, 12).alpha, 255);
  EXPECT_EQ(pixelAt(*bitmap, 299, 12).alpha, 0);
  EXPECT_LE(inkOf(*bitmap).left(), 1) << "cut off at the left";
}

TEST_F(QtTextScriptsTest, aShortLineReadFromTheRightStandsAtTheLeft) {
  const QRect ink = inkOf(*drawn("שלום"));
  EXPECT_LT(ink.left(), 6);
  EXPECT_LT(ink.right(), 70);
}

// Fonts that stand in for some characters have heights of their own.
TEST_F(QtTextScriptsTest, linesAreNeverCloserThanThoseOfThePlainFont) {
  const auto heightOf = [&](const std::string& text) {
    return renderer_.measure(text, {}, {1000, 500}).size.height;
  };
  for (const std::string& text : kScripts) EXPECT_GE(heightOf(text), heightOf("x") - kNear) << text;
  for (const char* text : {"हिन्दी", "😀", "শরৎ", "한", "ש"})
    EXPECT_GE(heightOf(text), heightOf("x") - kNear) << text;
}

TEST_F(QtTextScriptsTest, nonsensicalFontSizesTakeNoMoreMemoryThanTheScreen) {
  Layer layer;
  LayerText shown;
  for (const double fontSize : {0.0, 1.0, 900.0, 10'000.0, 4'294'967'295.0}) {
    shown.set(layer, renderer_, {kScripts.front() + "\n" + kScripts.back(), fontSize, {960, 540}, true, true},
              2);
    const SizePx pixels = layer.properties().contents->storedSize();
    EXPECT_LE(pixels.width, 1920) << fontSize;
    EXPECT_LE(pixels.height, 1080) << fontSize;
  }
}

}  // namespace
}  // namespace lumivane

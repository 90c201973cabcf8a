#include "imaging/TextLayout.h"

#include "tests/support/FakeTextRenderer.h"

namespace lumivane {
namespace {

// A unit of this renderer is half as wide as the font is high: at 20 points, 100 of them fill 1000 points, and 117
// when they are squeezed to 8.5 points each.
struct TextLayoutTest : testing::Test {
  FakeTextRenderer renderer;
  TextLayoutRequest request{
      .text = "", .fontSizePt = 20, .screen = {1000, 600}, .adjustWidth = true, .showImagePath = true};
  TextLayout layOut(const std::string& text) {
    request.text = text;
    renderer.measured.clear();
    return layOutText(renderer, request);
  }
  static std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
  }
};

TEST_F(TextLayoutTest, leavesAShortTextAlone) {
  const TextLayout layout = layOut("/p/a.jpg");
  EXPECT_EQ(layout.text, "/p/a.jpg");
  EXPECT_EQ(layout.style.kerningPt, 0);
  EXPECT_EQ(layout.style.lineBreakMode, LineBreakMode::Clipping);
  EXPECT_EQ(layout.style.color, (Color{1, 1, 1, 1}));
  EXPECT_EQ(layout.style.fontSizePt, 20);
  EXPECT_EQ(layout.bounds.origin, PointPt{});
  EXPECT_NEAR(layout.bounds.size.width, 80 + 6, 1e-9);
  EXPECT_NEAR(layout.bounds.size.height, 24 + 4, 1e-9);
}

TEST_F(TextLayoutTest, measuresTheFirstLineOnOneLineOfTheScreenThenTheWholeText) {
  static_cast<void>(layOut(std::string(101, 'x') + "\nsecond\nthird"));
  ASSERT_EQ(renderer.measured.size(), 3U);
  for (const std::size_t i : {0U, 1U}) {
    EXPECT_EQ(renderer.measured[i].text, std::string(101, 'x'));
    EXPECT_EQ(renderer.measured[i].box, (SizePt{1000, 30}));
    EXPECT_EQ(renderer.measured[i].style.lineBreakMode, LineBreakMode::CharacterWrapping);
    EXPECT_EQ(renderer.measured[i].style.kerningPt, i == 0 ? 0 : -1.5);
  }
  EXPECT_EQ(renderer.measured[2].text, std::string(101, 'x') + "\nsecond\nthird");
  EXPECT_EQ(renderer.measured[2].box, (SizePt{1000, 600}));
  EXPECT_EQ(renderer.measured[2].style.lineBreakMode, LineBreakMode::Clipping);
  EXPECT_EQ(renderer.measured[2].style.kerningPt, -1.5);
}

TEST_F(TextLayoutTest, aLineThatJustFitsIsNotSqueezed) {
  EXPECT_EQ(layOut(std::string(100, 'x')).style.kerningPt, 0);
  EXPECT_NEAR(layOut(std::string(100, 'x')).bounds.size.width, 1000 + 6, 1e-9);
  EXPECT_EQ(layOut(std::string(100, 'x') + "\n" + std::string(500, 'y')).style.kerningPt, 0);
}

TEST_F(TextLayoutTest, squeezesALineThatIsALittleTooWide) {
  const TextLayout layout = layOut(std::string(101, 'x'));
  EXPECT_EQ(layout.text.size(), 101U);
  EXPECT_EQ(layout.style.kerningPt, -1.5);
  EXPECT_NEAR(layout.bounds.size.width, 101 * 8.5 + 6, 1e-9);
}

TEST_F(TextLayoutTest, shortensAPathThatDoesNotEvenFitSqueezed) {
  const std::string path = "/" + std::string(97, 'd') + "/the-name-itself.jpg";
  ASSERT_EQ(path.size(), 118U);
  EXPECT_EQ(layOut(path.substr(1)).text, path.substr(1)) << "117 units still fit";
  const TextLayout layout = layOut(path);
  EXPECT_EQ(layout.text, ".." + path.substr(118 - 100 + 3));
  EXPECT_EQ(layout.style.kerningPt, 0);
  EXPECT_NEAR(layout.bounds.size.width, (100 - 3 + 2) * 10 + 6, 1e-9);
}

TEST_F(TextLayoutTest, theSecondLineStaysBelowAShortenedPath) {
  const std::string path = "/" + std::string(180, 'd') + "/n.jpg";
  const TextLayout layout = layOut(path + "\nsecond");
  EXPECT_EQ(layout.text, ".." + path.substr(path.size() - 100 + 3) + "\nsecond");
  EXPECT_NEAR(layout.bounds.size.height, 2 * 24 + 4, 1e-9);
}

TEST_F(TextLayoutTest, onlyPathsLoseTheirBeginning) {
  request.showImagePath = false;
  const TextLayout layout = layOut(std::string(200, 'x'));
  EXPECT_EQ(layout.text.size(), 200U);
  EXPECT_EQ(layout.style.kerningPt, -1.5);
  EXPECT_NEAR(layout.bounds.size.width, 1000 + 6, 1e-9) << "no wider than the screen";
}

TEST_F(TextLayoutTest, messagesKeepTheirWholeText) {
  for (const char* message :
       {"Image gone", "Change pics", "Several images in a row", "Can't delete", "Rescan the pictures"}) {
    const std::string text = message + std::string(200, 'x');
    const TextLayout layout = layOut(text);
    EXPECT_EQ(layout.text, text);
    EXPECT_EQ(layout.style.kerningPt, -1.5);
  }
  EXPECT_NE(layOut("An Image gone" + std::string(200, 'x')).text.find(".."), std::string::npos);
}

TEST_F(TextLayoutTest, aScreenThatFitsThreeCharactersShortensNothing) {
  request.screen.width = 3 * 8.5;
  EXPECT_EQ(layOut("abcdefgh").text, "abcdefgh");
  request.screen.width = 4 * 8.5;  // and three that are not squeezed
  EXPECT_EQ(layOut("abcdefgh").text, "..");
  EXPECT_EQ(layOut("abcdefgh\nsecond").text, "..\nsecond");
  request.screen.width = 50;
  EXPECT_EQ(layOut("abcdefgh").text, "..gh");
}

TEST_F(TextLayoutTest, theSecondLineStaysWhereNothingOfThePathDoes) {
  request.fontSizePt = 6;  // 3 points a unit, 1.5 squeezed
  request.screen.width = 6;
  EXPECT_EQ(layOut("abcdefgh\nsecond").text, "..\nsecond");
  EXPECT_EQ(layOut("abcdefgh").text, "..");
}

TEST_F(TextLayoutTest, countsUtf16Units) {
  EXPECT_EQ(layOut(repeated("😀", 50)).style.kerningPt, 0);
  EXPECT_EQ(layOut(repeated("😀", 51)).style.kerningPt, -1.5);
  EXPECT_EQ(layOut(repeated("ü", 100)).style.kerningPt, 0);
  const std::string path = repeated("ü", 150);
  EXPECT_EQ(layOut(path).text, ".." + repeated("ü", 97));
}

// Each of these is seen as one character; the one that the beginning ends in goes as a whole.
TEST_F(TextLayoutTest, aShortenedPathNeverBeginsInsideACharacter) {
  const std::string combined = "x\xCC\x81\xCC\xA3";                   // three units
  const std::string hangul = "\xE1\x84\x80\xE1\x85\xA1\xE1\x86\xA8";  // a syllable in three parts
  for (const auto& [character, units] : std::vector<std::pair<std::string, int>>{
           {combined, 3}, {"😀", 2}, {"🇩🇪", 4}, {"👩‍👩‍👧", 8}, {hangul, 3}}) {
    for (int before = 0; before < units; ++before) {
      const int times = 160 / units;
      const std::string text =
          layOut(std::string(static_cast<std::size_t>(before), 'd') + repeated(character, times) + ".jpg")
              .text;
      const int left = (100 - 3 - 4) / units;
      EXPECT_EQ(text, ".." + repeated(character, left) + ".jpg") << character << " after " << before;
    }
  }
}

TEST_F(TextLayoutTest, bytesThatAreNoTextCountAsOneCharacterEach) {
  EXPECT_EQ(layOut("f\xFCr.jpg").text, "f\xEF\xBF\xBDr.jpg");
  EXPECT_EQ(layOut(repeated("\xFC", 100)).style.kerningPt, 0);
  EXPECT_EQ(layOut("\xED\xA0\x80").text.size(), 9U) << "half a surrogate pair";
  EXPECT_EQ(layOut("a\xE2\x82").text, "a\xEF\xBF\xBD");
}

TEST_F(TextLayoutTest, anEmptyFirstLineFits) {
  const TextLayout layout = layOut("\n" + std::string(300, 'x'));
  EXPECT_EQ(layout.text.size(), 301U);
  EXPECT_EQ(layout.style.kerningPt, 0);
  EXPECT_EQ(layOut("").text, "");
}

TEST_F(TextLayoutTest, withoutTheFontTheTextIsPlain) {
  renderer.available = false;
  EXPECT_FALSE(layOut("x").style.styled);
}

TEST_F(TextLayoutTest, theHelpIsNotAdjusted) {
  request.adjustWidth = false;
  const TextLayout layout = layOut(std::string(200, 'x'));
  EXPECT_EQ(layout.style.kerningPt, 0);
  EXPECT_EQ(layout.text.size(), 200U);
  EXPECT_EQ(renderer.measured.size(), 1U);
}

}  // namespace
}  // namespace lumivane

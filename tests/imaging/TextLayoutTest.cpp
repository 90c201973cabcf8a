#include "imaging/TextLayout.h"

#include "tests/support/FakeTextRenderer.h"

namespace lumivane {
namespace {

// Characters of this renderer are half as wide as the font is high: at 20 points, 100 of them fill 1000 points.
struct TextLayoutTest : testing::Test {
  FakeTextRenderer renderer;
  TextLayoutRequest request{
      .text = "", .fontSizePt = 20, .screen = {1000, 600}, .adjustWidth = true, .showImagePath = true};
  TextLayout layOut(std::string_view text) {
    request.text = text;
    return layOutText(renderer, request);
  }
};

TEST_F(TextLayoutTest, leavesAShortTextAlone) {
  const TextLayout layout = layOut("/p/a.jpg");
  EXPECT_EQ(layout.text, "/p/a.jpg");
  EXPECT_EQ(layout.style.kerningPt, 0);
  EXPECT_EQ(layout.style.lineBreakMode, LineBreakMode::Clipping);
  EXPECT_NEAR(layout.bounds.size.width, 80 + 6, 1e-9);
  EXPECT_NEAR(layout.bounds.size.height, 24 + 4, 1e-9);
}

TEST_F(TextLayoutTest, squeezesALineThatIsALittleTooWide) {
  const TextLayout layout = layOut(std::string(110, 'x'));
  EXPECT_EQ(layout.text.size(), 110U);
  EXPECT_EQ(layout.style.kerningPt, -1.5);
}

TEST_F(TextLayoutTest, aPathThatIsFarTooLongKeepsItsEnd) {
  const std::string path = "/" + std::string(180, 'd') + "/the-name-itself.jpg";
  const TextLayout layout = layOut(path);
  EXPECT_EQ(layout.text, ".." + path.substr(path.size() - 100 + 3));
  EXPECT_EQ(layout.style.kerningPt, 0);
  EXPECT_TRUE(layout.text.ends_with("/the-name-itself.jpg"));
}

TEST_F(TextLayoutTest, theSecondLineStaysBelowAShortenedPath) {
  const std::string path = "/" + std::string(180, 'd') + "/n.jpg";
  const TextLayout layout = layOut(path + "\nsecond");
  EXPECT_TRUE(layout.text.starts_with(".."));
  EXPECT_TRUE(layout.text.ends_with("/n.jpg\nsecond"));
}

TEST_F(TextLayoutTest, onlyPathsLoseTheirBeginning) {
  request.showImagePath = false;
  const TextLayout layout = layOut(std::string(200, 'x'));
  EXPECT_EQ(layout.text.size(), 200U);
  EXPECT_EQ(layout.style.kerningPt, -1.5);
}

TEST_F(TextLayoutTest, messagesKeepTheirWholeText) {
  const TextLayout layout = layOut("Image gone: " + std::string(200, 'x'));
  EXPECT_EQ(layout.text.size(), 212U);
}

TEST_F(TextLayoutTest, aNarrowScreenThatFitsThreeCharactersShortensNothing) {
  request.screen.width = 27;
  const TextLayout layout = layOut("abcdefgh");
  EXPECT_EQ(layout.text, "abcdefgh");
}

TEST_F(TextLayoutTest, withoutTheFontTheTextIsPlain) {
  renderer.available = false;
  EXPECT_FALSE(layOut("x").style.styled);
}

TEST_F(TextLayoutTest, theHelpIsNotAdjusted) {
  request.adjustWidth = false;
  EXPECT_EQ(layOut(std::string(200, 'x')).style.kerningPt, 0);
}

}  // namespace
}  // namespace lumivane

#include "imaging/InformationText.h"

namespace lumivane {
namespace {

TEST(InformationText, writesAColonAsBackslashAndSlash) {
  EXPECT_EQ(loggedFilename("/p/12:30 noon.jpg"), "/p/12\\/30 noon.jpg");
  EXPECT_EQ(shownFilename("/p/a:b.jpg", {true, false, false}), "a\\/b");
}

TEST(InformationText, showsTheWantedPartOfThePath) {
  const std::string path = "/home/me/Pictures/sea.side.jpg";
  EXPECT_EQ(shownFilename(path, {true, true, true}), path);
  EXPECT_EQ(shownFilename(path, {true, true, false}), "/home/me/Pictures/sea.side");
  EXPECT_EQ(shownFilename(path, {true, false, true}), "sea.side.jpg");
  EXPECT_EQ(shownFilename(path, {true, false, false}), "sea.side");
  EXPECT_EQ(shownFilename(path, {false, true, true}), "/home/me/Pictures");
  EXPECT_EQ(shownFilename(path, {false, false, true}), "");
}

TEST(InformationText, aBlankNameStaysABlank) {
  EXPECT_EQ(shownFilename(" ", {true, true, false}), " ");
}

TEST(InformationText, onlyWhatFollowsTheLastDotOfANameIsAnExtension) {
  EXPECT_EQ(withoutExtension("/a.b/c"), "/a.b/c");
  EXPECT_EQ(withoutExtension("/a/.jpg"), "/a/.jpg");
  EXPECT_EQ(withoutExtension("/a/b."), "/a/b.");
  EXPECT_EQ(withoutExtension("/a/St. Ives"), "/a/St. Ives");
  EXPECT_EQ(baseName("/a/b.c.jpg"), "b.c");
  EXPECT_EQ(folderPart("/a.jpg"), "/");
  EXPECT_EQ(folderPart("a.jpg"), "");
}

TEST(InformationText, blanksControlCharactersButNotTheZero) {
  std::string text =
      "a\x01"
      "b\x1F"
      "c\x20"
      "d";
  text += '\0';
  std::string expected = "a b c d";
  expected += '\0';
  EXPECT_EQ(replaceNonPrintingChars(text), expected);
  EXPECT_EQ(replaceNonPrintingChars("gr\xC3\xBC\xC3\x9F"), "gr\xC3\xBC\xC3\x9F");
}

TEST(InformationText, trimsWhiteSpaceOfAllScripts) {
  EXPECT_EQ(trimmed(" \t\r\n a b \v\f"), "a b");
  EXPECT_EQ(trimmed("\xE3\x80\x80\xE6\x9D\xB1 \xE4\xBA\xAC\xC2\xA0\xE2\x80\xA8"),
            "\xE6\x9D\xB1 \xE4\xBA\xAC");
  EXPECT_EQ(trimmed("\xE3\x80\x80"), "");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed(" \xE4\x20\xE4 "), "\xE4 \xE4") << "no UTF-8";
  EXPECT_EQ(trimmed("\x80\x80"), "\x80\x80");
}

TEST(InformationText, describesByCaptionAndKeywords) {
  EXPECT_EQ(imageDescription("/p/a.jpg", " At sea \n", " sun, sand "), "At sea. sun, sand");
  EXPECT_EQ(imageDescription("/p/a.jpg", std::nullopt, "sun"), "sun");
  EXPECT_EQ(imageDescription("/p/a.jpg", "two\nlines", std::nullopt), "two lines");
  EXPECT_EQ(imageDescription("/p/a.jpg", std::nullopt, std::nullopt), std::nullopt);
  EXPECT_EQ(imageDescription("/p/a.jpg", "   ", std::nullopt), std::nullopt);
}

TEST(InformationText, leavesOutACaptionThatOnlyRepeatsTheName) {
  EXPECT_EQ(imageDescription("/p/a.jpg", "a", std::nullopt), std::nullopt);
  EXPECT_EQ(imageDescription("/p/a.jpg", "a", "sun"), "sun");
}

TEST(InformationText, namesTheLongitudeFirst) {
  EXPECT_EQ(coordinatesText(48.137, 11.576), "GPS: +11.58 +48.14");
  EXPECT_EQ(coordinatesText(-33.856, -151.2), "GPS: -151.20 -33.86");
}

TEST(InformationText, namesTheTownBeforeTheCountry) {
  EXPECT_EQ(placeName({"Munich", "Germany"}), "Munich, Germany");
  EXPECT_EQ(placeName({std::nullopt, "Germany"}), "Germany");
  EXPECT_EQ(placeName({"Munich", std::nullopt}), "Munich, (null)");
}

TEST(InformationText, joinsWhatIsThere) {
  EXPECT_EQ(informationLine("x", "y", "z"), "x. y. z");
  EXPECT_EQ(informationLine(std::nullopt, "y", std::nullopt), "y");
  EXPECT_EQ(informationLine(std::nullopt, std::nullopt, "z"), "z");
  EXPECT_EQ(informationLine(std::nullopt, std::nullopt, std::nullopt), "");
}

TEST(ScreenText, addsTheSecondLine) {
  EXPECT_EQ(screenText("name", "info", {}), "name\ninfo");
  EXPECT_EQ(screenText("", "info", {}), "info");
  EXPECT_EQ(screenText("name", std::nullopt, {}), "name");
}

TEST(ScreenText, saysWhatIsPaused) {
  ScreenTextState state;
  state.paused = true;
  state.zoomPaused = true;
  EXPECT_EQ(screenText("name", "info", state), "name (slideshow paused) (zoom paused)\ninfo");
}

TEST(ScreenText, hidesBothLinesWhenMutedOrBlank) {
  ScreenTextState muted;
  muted.muted = true;
  EXPECT_EQ(screenText("name", "info", muted), " ");
  muted.blank = true;
  EXPECT_EQ(screenText("name", "info", muted), "(blanked)");
  ScreenTextState blank;
  blank.blank = true;
  EXPECT_EQ(screenText("name", "info", blank), "(blanked)");
}

}  // namespace
}  // namespace lumivane

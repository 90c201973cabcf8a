#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

struct ViewKeysTest : ViewTest {
  ViewKeysTest() {
    configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
    listPictures(10);
    displays.all = {{1, "Color LCD", {1920, 1080}, 1}, {2, "Other", {1920, 1080}, 1}};
  }
  void showPictures(int count) {
    start();
    beat();
    for (int i = 1; i < count; ++i) runUntilChange();
  }
};

TEST_F(ViewKeysTest, stepsBackAndForwardThroughTheHistory) {
  showPictures(5);
  ASSERT_EQ(view->filename(), path(5));
  const auto decodes = decoder.decodes;
  const auto step = [this](char32_t key) {
    press(key);
    beat();
    return view->filename();
  };
  EXPECT_EQ(step(kLeftArrowCharacter), path(4));
  EXPECT_EQ(step(kUpArrowCharacter), path(3));
  EXPECT_EQ(step(kLeftArrowCharacter), path(2));
  EXPECT_EQ(step(kRightArrowCharacter), path(3));
  EXPECT_EQ(step(kDownArrowCharacter), path(4));
  EXPECT_EQ(step(kRightArrowCharacter), path(5));
  EXPECT_EQ(decoder.decodes, decodes) << "stepping decodes nothing";
  EXPECT_EQ(step(kRightArrowCharacter), path(6));
}

TEST_F(ViewKeysTest, listOrderGoesOnAfterTheNewestPicture) {
  showPictures(4);
  press(kLeftArrowCharacter);
  beat();
  press(kLeftArrowCharacter);
  beat();
  ASSERT_EQ(view->filename(), path(2));
  runUntilChange();
  EXPECT_EQ(view->filename(), path(5));
}

TEST_F(ViewKeysTest, backRightAfterTheStartMovesOn) {
  showPictures(1);
  press(kLeftArrowCharacter);
  beat();
  EXPECT_EQ(view->filename(), path(2));
}

TEST_F(ViewKeysTest, aKeyIsLeftForTheOtherDisplays) {
  showPictures(1);
  press(U' ');
  ASSERT_TRUE(tables.pendingKeyEventsByDisplay.contains(2));
  EXPECT_EQ(tables.pendingKeyEventsByDisplay[2].character, U' ');
  EXPECT_FALSE(tables.pendingKeyEventsByDisplay.contains(1));
}

TEST_F(ViewKeysTest, zWithoutMotionDoesNothingAndIsNotForwarded) {
  showPictures(1);
  press(U'z');
  EXPECT_TRUE(tables.pendingKeyEventsByDisplay.empty());
  EXPECT_EQ(view->shownText(), view->filename());
}

TEST_F(ViewKeysTest, upperCaseLettersAreNoCommands) {
  configure([](DisplaySettings& s) { s.kenBurnsIsOn_ = true; });
  showPictures(1);
  press(U'Z');
  beat();
  EXPECT_EQ(view->currentLayer()->properties().speed, 1);
}

TEST_F(ViewKeysTest, hShowsAndHidesTheHelp) {
  showPictures(1);
  press(U'h');
  EXPECT_FALSE(view->helpLayer().properties().hidden);
  EXPECT_TRUE(view->helpLayer().properties().contents);
  press(U'h');
  EXPECT_TRUE(view->helpLayer().properties().hidden);
}

TEST_F(ViewKeysTest, bHidesThePictures) {
  showPictures(1);
  press(U'b');
  EXPECT_TRUE(view->currentLayer()->properties().hidden);
  press(U'b');
  EXPECT_FALSE(view->currentLayer()->properties().hidden);
}

TEST_F(ViewKeysTest, fTogglesFullScreenAndEscapeLeavesIt) {
  showPictures(1);
  press(U'f');
  EXPECT_TRUE(window.fullScreen);
  press(kEscapeCharacter);
  EXPECT_FALSE(window.fullScreen);
  press(kEscapeCharacter);
  EXPECT_EQ(window.fullScreenToggles, 2);
}

}  // namespace
}  // namespace lumivane

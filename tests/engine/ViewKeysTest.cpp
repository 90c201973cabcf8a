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

TEST_F(ViewKeysTest, tenStepsBackShowTenPicturesWithoutDecoding) {
  showPictures(12);
  const ImageList list = view->imageFiles();
  std::size_t expected = view->imageIndex();
  const auto decodes = decoder.decodes;
  for (int step = 0; step < 10; ++step) {
    expected = (expected + list.size() - 1) % list.size();
    press(kLeftArrowCharacter);
    beat();
    EXPECT_EQ(view->filename(), list[expected]);
  }
  EXPECT_EQ(decoder.decodes, decodes);
}

TEST_F(ViewKeysTest, returnRevealsThePicturesOfAllDisplays) {
  showPictures(1);
  tables.shownFileByDisplay[2] = "/other/picture.jpg";
  tables.shownFileByDisplay[3] = "/a/display/that/is/gone.jpg";
  press(kReturnCharacter);
  EXPECT_EQ(fileBrowser.selected, (std::vector<std::string>{path(1), "/other/picture.jpg"}));
  EXPECT_TRUE(tables.pendingKeyEventsByDisplay.empty()) << "one key reveals everything: nobody else is to";
}

TEST_F(ViewKeysTest, spacePausesTheShow) {
  showPictures(1);
  press(U' ');
  EXPECT_TRUE(view->shownText().ends_with(" (slideshow paused)"));
  const Layer* before = view->currentLayer();
  run(Seconds{100});
  EXPECT_EQ(view->currentLayer(), before);
  press(U' ');
  run(Seconds{0.1});
  EXPECT_NE(view->currentLayer(), before);
}

TEST_F(ViewKeysTest, iHidesTheInformationLineAndShowsItAgain) {
  configure([](DisplaySettings& s) { s.showImageInfo_ = true; });
  showPictures(1);
  press(U'i');
  EXPECT_EQ(view->shownText(), " ");
  press(U'i');
  EXPECT_TRUE(view->shownText().ends_with("\n... info will be provided with next image, if available ..."));
}

// --- Standing in for the screen saver ---

struct ViewSurrogateKeysTest : ViewKeysTest {
  void showAsScreenSaver() {
    showPictures(1);
    view->setScreensaverSurrogateMode(true);
    window.fullScreen = true;
  }
};

TEST_F(ViewSurrogateKeysTest, anyOtherKeyQuits) {
  showAsScreenSaver();
  for (const char32_t key : {U'Z', U'x', kTabCharacter, kOtherKeyCharacter}) {
    press(key);
    EXPECT_EQ(application.terminations, 1);
    application.terminations = 0;
    EXPECT_TRUE(tables.pendingKeyEventsByDisplay.contains(2));
    tables.pendingKeyEventsByDisplay.clear();
  }
}

TEST_F(ViewSurrogateKeysTest, escapeQuitsAndIsNotForwarded) {
  showAsScreenSaver();
  press(kEscapeCharacter);
  EXPECT_EQ(application.terminations, 1);
  EXPECT_TRUE(window.fullScreen);
  EXPECT_TRUE(tables.pendingKeyEventsByDisplay.empty());
}

TEST_F(ViewSurrogateKeysTest, theCommandKeysStillSteer) {
  configure([](DisplaySettings& s) { s.kenBurnsIsOn_ = true; });
  showAsScreenSaver();
  for (const char32_t key : {kLeftArrowCharacter, kRightArrowCharacter, U' ', U'h', U'i', U'b', U'z'})
    press(key);
  EXPECT_EQ(application.terminations, 0);
}

TEST_F(ViewSurrogateKeysTest, aModifierKeyQuitsUnlessSuperIsHeld) {
  showAsScreenSaver();
  view->flagsChanged(kMetaModifier);
  view->flagsChanged(kMetaModifier | kShiftModifier);
  EXPECT_EQ(application.terminations, 0);
  view->flagsChanged(kShiftModifier);
  EXPECT_EQ(application.terminations, 1);
  view->flagsChanged(kNoModifiers);  // Super was let go
  EXPECT_EQ(application.terminations, 2);
}

TEST_F(ViewSurrogateKeysTest, inAWindowNothingQuits) {
  showAsScreenSaver();
  window.fullScreen = false;
  press(U'x');
  press(kEscapeCharacter);
  view->flagsChanged(kShiftModifier);
  EXPECT_EQ(application.terminations, 0);
}

TEST_F(ViewSurrogateKeysTest, anOrdinaryShowDoesNotQuit) {
  showPictures(1);
  window.fullScreen = true;
  press(U'x');
  view->flagsChanged(kShiftModifier);
  EXPECT_EQ(application.terminations, 0);
}

}  // namespace
}  // namespace lumivane

// What the preferences sheet shows of the settings, and which display it shows.
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

using enum SheetControl;
using testing::ElementsAre;

using SheetFillingTest = SheetViewTest;

// The settings of SheetViewTest, and those of a second display that differ from them wherever something can.
struct SheetOfTwoDisplaysTest : SheetViewTest {
  SheetOfTwoDisplaysTest() {
    displays.all = {{1, "Color LCD", {1920, 1080}, 1}, {2, "Projector", {1920, 1080}, 1}};
    configure(
        [](DisplaySettings& s) {
          s.durationPerImage_ = 77;
          s.initZoomInFactor_ = 1.75F;
          s.excludeSize_ = 400;
          s.excludekB_ = 9;
          s.fontSize_ = 31;
          s.infoDelay_ = 4;
          s.useSpotlight_ = true;
          s.showImagePath_ = false;
          s.displayFilename_ = false;
          s.showFileExtension_ = false;
          s.showImageInfo_ = false;
          s.zoomIsOn_ = true;
          s.kenBurnsIsOn_ = false;
          s.dontRandomize_ = true;
          s.startWithRandom_ = true;
          s.allowBlackBorders_ = false;
          s.blackBorderAvoidance_ = 0.25F;
          s.crossDissolve_ = false;
          s.crossDissolveDuration_ = 3.5F;
          s.enableDeleteAtRuntime_ = true;
          s.skipPatterns_ = {"a", "", "b"};
        },
        "Projector");
    listPictures(5);
    storeList({"/projector/a.jpg", "/projector/b.jpg"}, "Projector");
  }
  void switchTo(std::optional<std::size_t> display) {
    choose(currentScreenView_, display, &SheetActions::changeScreen);
  }
};

TEST_F(SheetFillingTest, namesItsVersion) {
  start();
  EXPECT_EQ(sheet.texts[version_label_], "Version 1.0 (#42)");
}

TEST_F(SheetFillingTest, namesAVersionThatIsNotKnown) {
  settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
  Host bare = host();
  bare.programVersion = {};
  view = LumivaneView::initWithFrame({}, false, bare);
  EXPECT_EQ(sheet.texts[version_label_], "Version ? (#\?\?)");
}

TEST_F(SheetFillingTest, showsWhatIsSet) {
  listPictures(5);
  start();
  EXPECT_EQ(sheet.texts[directoryPathView_], pictureFolder.path());
  EXPECT_EQ(sheet.texts[durationPerImageView_], "10");
  EXPECT_EQ(sheet.texts[initZoomInFactorView_], "1.3");
  EXPECT_EQ(sheet.texts[excludeSizeView_], "1");
  EXPECT_EQ(sheet.texts[excludekBView_], "0");
  EXPECT_EQ(sheet.texts[fontSizeView_], "20");
  EXPECT_EQ(sheet.texts[infoDelayView_], "0");
  EXPECT_EQ(sheet.texts[skipPatternsView_], ".*/thumb.*");
  EXPECT_EQ(sheet.count(), "5");
  EXPECT_FALSE(sheet.on[useSpotlightView_]);
  EXPECT_TRUE(sheet.on[useDirectorySearchView_]);
  EXPECT_TRUE(sheet.on[showImagePathView_]);
  EXPECT_TRUE(sheet.on[displayFilenameView_]);
  EXPECT_TRUE(sheet.on[showFileExtensionView_]);
  EXPECT_TRUE(sheet.on[showImageInfoView_]);
  EXPECT_FALSE(sheet.on[zoomIsOnView_]);
  EXPECT_FALSE(sheet.on[kenBurnsView_]);
  EXPECT_TRUE(sheet.on[dontRandomizeView_]) << "the box says random";
  EXPECT_FALSE(sheet.on[startWithRandomView_]);
  EXPECT_FALSE(sheet.on[allowBlackBordersView_]) << "the box says avoid";
  EXPECT_FALSE(sheet.on[crossDissolveView_]);
  EXPECT_FALSE(sheet.on[enableDeleteView_]);
  EXPECT_EQ(sheet.sliders[blackBordersThresholdSlider_], 0.0F);
  EXPECT_EQ(sheet.sliders[crossDissolveDurationSlider_], 5.0F);
  EXPECT_FALSE(sheet.enabled(startWithRandomView_));
  EXPECT_FALSE(sheet.enabled(blackBordersThresholdSlider_));
  EXPECT_TRUE(sheet.enabled(showFileExtensionView_));
  EXPECT_TRUE(chooserEnabled());
}

TEST_F(SheetFillingTest, albumsAreSwitchedOffWhateverWasStored) {
  configure([](DisplaySettings& s) {
    s.useAlbum_ = true;
    s.selectedAlbum_ = "Holidays";
  });
  start();
  EXPECT_TRUE(log.has("Selected Album = Holidays", LogLevel::Information));
  EXPECT_FALSE(settings().useAlbum_);
  EXPECT_FALSE(sheet.on[useAlbumView_]);
  EXPECT_FALSE(sheet.enabled(useAlbumView_));
  EXPECT_TRUE(sheet.on[useDirectoryTreeView_]);
  EXPECT_TRUE(sheet.enabled(excludekBView_));
}

TEST_F(SheetFillingTest, withoutAFolderAMessageStandsAndOneIsAskedFor) {
  withFolder = false;
  configure([](DisplaySettings& s) { s.directoryBookmarks_ = emptyBookmarks(); });
  start();
  EXPECT_FALSE(view->hasFolder());
  EXPECT_EQ(view->firstLine(), "Change pics folder in Preferences for monitor Color LCD");
  EXPECT_EQ(sheet.texts[directoryPathView_], "");
  run(Seconds{60});
  EXPECT_EQ(view->firstLine(), "Change pics folder in Preferences for monitor Color LCD");
}

TEST_F(SheetFillingTest, withAFolderNoneIsAskedFor) {
  start();
  EXPECT_TRUE(view->hasFolder());
}

TEST_F(SheetFillingTest, loadsTheHelpEachTimeTheWindowComes) {
  start();
  view->viewWillMoveToWindow(&window);
  EXPECT_THAT(help.loaded,
              ElementsAre("Help_ReadMe_Changelog_LumivaneApp", "Help_ReadMe_Changelog_LumivaneApp"));
  EXPECT_EQ(log.countStartingWith("locating"), 0U);
}

TEST_F(SheetFillingTest, saysWhereTheHelpIsMissing) {
  help.hasDocument = false;
  start();
  EXPECT_TRUE(log.has("locating Help_ReadMe_Changelog_LumivaneApp.rtf failed", LogLevel::Error));
}

TEST_F(SheetFillingTest, thereIsNoneWithoutASupportFolder) {
  folders.data.clear();
  start();
  EXPECT_EQ(view->preferencesSheet(), nullptr);
  EXPECT_EQ(sheet.actions, nullptr);
}

TEST_F(SheetFillingTest, tellsNobodyAnyMoreWhenTheViewHasGone) {
  start();
  EXPECT_NE(sheet.actions, nullptr);
  view.reset();
  EXPECT_EQ(sheet.actions, nullptr);
}

// --- The display ---

TEST_F(SheetOfTwoDisplaysTest, offersAllDisplaysAndShowsOurs) {
  window.display = 2;
  start();
  EXPECT_THAT(sheet.items[currentScreenView_], ElementsAre("Color LCD", "Projector"));
  EXPECT_EQ(sheet.selected[currentScreenView_], 1U);
}

TEST_F(SheetOfTwoDisplaysTest, anotherDisplayIsStoredLoadedAndShown) {
  start();
  run(Seconds{0.1});
  type(durationPerImageView_, "42", &SheetActions::setDurationPerImage);
  log.clear();
  switchTo(1);
  EXPECT_EQ(stored("Color LCD").durationPerImage_, 42);
  EXPECT_EQ(stored("Projector").durationPerImage_, 77);
  EXPECT_EQ(view->displayName(), "Projector");
  EXPECT_EQ(view->displayNumber(), 2U);
  EXPECT_EQ(settings().durationPerImage_, 77);
  EXPECT_THAT(view->imageFiles(), ElementsAre("/projector/a.jpg", "/projector/b.jpg"));
  EXPECT_EQ(view->imagesNotYetShown().size(), 2U);
}

TEST_F(SheetOfTwoDisplaysTest, everyControlShowsTheOtherDisplay) {
  start();
  switchTo(1);
  EXPECT_EQ(sheet.texts[durationPerImageView_], "77");
  EXPECT_EQ(sheet.texts[initZoomInFactorView_], "1.75");
  EXPECT_EQ(sheet.texts[excludeSizeView_], "400");
  EXPECT_EQ(sheet.texts[excludekBView_], "9");
  EXPECT_EQ(sheet.texts[fontSizeView_], "31");
  EXPECT_EQ(sheet.texts[infoDelayView_], "4");
  EXPECT_EQ(sheet.texts[skipPatternsView_], "a\n\nb");
  EXPECT_EQ(sheet.count(), "2");
  EXPECT_TRUE(sheet.on[useSpotlightView_]);
  EXPECT_FALSE(sheet.on[useDirectorySearchView_]);
  for (const SheetControl off : {showImagePathView_, displayFilenameView_, showFileExtensionView_,
                                 showImageInfoView_, kenBurnsView_, dontRandomizeView_, crossDissolveView_})
    EXPECT_FALSE(sheet.on[off]) << static_cast<int>(off);
  for (const SheetControl on :
       {zoomIsOnView_, startWithRandomView_, allowBlackBordersView_, enableDeleteView_})
    EXPECT_TRUE(sheet.on[on]) << static_cast<int>(on);
  EXPECT_EQ(sheet.sliders[blackBordersThresholdSlider_], 0.25F);
  EXPECT_EQ(sheet.sliders[crossDissolveDurationSlider_], 3.5F);
  EXPECT_TRUE(sheet.enabled(startWithRandomView_));
  EXPECT_TRUE(sheet.enabled(blackBordersThresholdSlider_));
  EXPECT_FALSE(sheet.enabled(showFileExtensionView_));
}

TEST_F(SheetOfTwoDisplaysTest, theShowStandsUntilTheSheetIsClosed) {
  start();
  run(Seconds{0.1});
  switchTo(1);
  EXPECT_FALSE(changeIsDue());
  close();
  EXPECT_EQ(log.countStartingWith("start animation"), 1U);
  EXPECT_EQ(view->displayName(), "Projector");
}

TEST_F(SheetOfTwoDisplaysTest, inTheOrderOfLeavingAndComing) {
  start();
  log.clear();
  switchTo(1);
  std::vector<std::string> said;
  for (const auto& entry : log.entries()) {
    for (const char* beginning :
         {"stop animation", "writing defaults", "Loading defaults", "load images from"})
      if (entry.text.starts_with(beginning)) said.emplace_back(beginning);
  }
  EXPECT_THAT(said,
              ElementsAre("stop animation", "writing defaults", "Loading defaults", "load images from"));
}

TEST_F(SheetOfTwoDisplaysTest, picturesInHandAreNotTakenAlong) {
  start();
  run(Seconds{4});
  ASSERT_TRUE(view->prefetchSlot().full());
  switchTo(1);
  EXPECT_FALSE(view->prefetchSlot().full());
}

TEST_F(SheetOfTwoDisplaysTest, theSameDisplayOrNoneIsNoSwitch) {
  start();
  log.clear();
  switchTo(0);
  switchTo(std::nullopt);
  switchTo(7);
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(SheetOfTwoDisplaysTest, aFolderIsNotTakenAlong) {
  configure([](DisplaySettings& s) { s.useAlbum_ = true; }, "Projector");
  start();
  switchTo(1);
  EXPECT_FALSE(view->hasFolder());
}

}  // namespace
}  // namespace lumivane

// The check boxes, radio buttons and sliders of the preferences sheet.
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

using enum SheetControl;

struct SheetSwitchesTest : SheetViewTest {
  SheetSwitchesTest() { startShow(); }
};

TEST_F(SheetSwitchesTest, theWayOfSearchingCallsForARescan) {
  tick(useSpotlightView_, true, &SheetActions::setUseSpotlight);
  EXPECT_TRUE(settings().useSpotlight_);
  EXPECT_TRUE(rescanIsDue());
  tick(useSpotlightView_, false, &SheetActions::setUseSpotlight);
  EXPECT_FALSE(settings().useSpotlight_);
}

TEST_F(SheetSwitchesTest, theInformationLineFollowsAtOnce) {
  const std::string name = view->filename();
  EXPECT_EQ(view->firstLine(), name);
  tick(showImagePathView_, false, &SheetActions::setShowImagePath);
  EXPECT_EQ(view->firstLine(), name.substr(name.rfind('/') + 1));
  tick(showFileExtensionView_, false, &SheetActions::setShowFileExtension);
  EXPECT_EQ(view->firstLine(), name.substr(name.rfind('/') + 1, 2));
  tick(displayFilenameView_, false, &SheetActions::setDisplayFilename);
  EXPECT_EQ(view->firstLine(), "");
  EXPECT_FALSE(sheet.enabled(showFileExtensionView_));
  tick(displayFilenameView_, true, &SheetActions::setDisplayFilename);
  EXPECT_EQ(view->firstLine(), name.substr(name.rfind('/') + 1, 2));
  EXPECT_TRUE(sheet.enabled(showFileExtensionView_));
  EXPECT_FALSE(rescanIsDue());
}

TEST_F(SheetSwitchesTest, switchesOfTheInformationLineAreSettings) {
  tick(showImagePathView_, false, &SheetActions::setShowImagePath);
  tick(displayFilenameView_, false, &SheetActions::setDisplayFilename);
  tick(showFileExtensionView_, false, &SheetActions::setShowFileExtension);
  tick(showImageInfoView_, false, &SheetActions::setShowImageInfo);
  EXPECT_FALSE(settings().showImagePath_ || settings().displayFilename_ || settings().showFileExtension_ ||
               settings().showImageInfo_);
  tick(showImagePathView_, true, &SheetActions::setShowImagePath);
  tick(displayFilenameView_, true, &SheetActions::setDisplayFilename);
  tick(showFileExtensionView_, true, &SheetActions::setShowFileExtension);
  tick(showImageInfoView_, true, &SheetActions::setShowImageInfo);
  EXPECT_TRUE(settings().showImagePath_ && settings().displayFilename_ && settings().showFileExtension_ &&
              settings().showImageInfo_);
}

TEST_F(SheetSwitchesTest, zoomAndKenBurnsExcludeEachOther) {
  tick(kenBurnsView_, true, &SheetActions::setKenBurnsIsOn);
  EXPECT_TRUE(settings().kenBurnsIsOn_);
  EXPECT_TRUE(changeIsDue());
  tick(zoomIsOnView_, true, &SheetActions::setZoomIsOn);
  EXPECT_TRUE(settings().zoomIsOn_);
  EXPECT_FALSE(settings().kenBurnsIsOn_);
  EXPECT_FALSE(sheet.on[kenBurnsView_]);
  EXPECT_TRUE(changeIsDue());
  tick(kenBurnsView_, true, &SheetActions::setKenBurnsIsOn);
  EXPECT_FALSE(settings().zoomIsOn_);
  EXPECT_FALSE(sheet.on[zoomIsOnView_]);
  tick(kenBurnsView_, false, &SheetActions::setKenBurnsIsOn);
  EXPECT_FALSE(settings().kenBurnsIsOn_ || settings().zoomIsOn_);
}

TEST_F(SheetSwitchesTest, whatOnlyAPlainZoomNeedsIsEnabledWithIt) {
  const auto zoomParametersAreEnabled = [this] {
    return std::vector<bool>{sheet.enabled(initZoomInFactorView_), sheet.enabled(initZoomInFactorLabelView_),
                             sheet.enabled(allowBlackBordersView_),
                             sheet.enabled(blackBordersThresholdSlider_)};
  };
  const std::vector<bool> all(4, true);
  const std::vector<bool> none(4, false);
  EXPECT_EQ(zoomParametersAreEnabled(), none);
  tick(zoomIsOnView_, true, &SheetActions::setZoomIsOn);
  EXPECT_EQ(zoomParametersAreEnabled(), all);
  tick(kenBurnsView_, true, &SheetActions::setKenBurnsIsOn);
  EXPECT_EQ(zoomParametersAreEnabled(), none);
  tick(zoomIsOnView_, true, &SheetActions::setZoomIsOn);
  tick(zoomIsOnView_, false, &SheetActions::setZoomIsOn);
  EXPECT_EQ(zoomParametersAreEnabled(), none);
}

TEST_F(SheetSwitchesTest, theBoxForRandomOrderIsTheOtherWayRound) {
  tick(dontRandomizeView_, false, &SheetActions::dontRandomize);
  EXPECT_TRUE(settings().dontRandomize_);
  EXPECT_TRUE(sheet.enabled(startWithRandomView_));
  tick(startWithRandomView_, true, &SheetActions::startWithRandom);
  EXPECT_TRUE(settings().startWithRandom_);
  tick(dontRandomizeView_, true, &SheetActions::dontRandomize);
  EXPECT_FALSE(settings().dontRandomize_);
  EXPECT_FALSE(sheet.enabled(startWithRandomView_));
  EXPECT_TRUE(settings().startWithRandom_) << "kept for the next time";
  EXPECT_FALSE(changeIsDue());
}

TEST_F(SheetSwitchesTest, theBoxForBlackBordersIsTheOtherWayRound) {
  tick(allowBlackBordersView_, true, &SheetActions::allowBlackBorders);
  EXPECT_FALSE(settings().allowBlackBorders_);
  tick(allowBlackBordersView_, false, &SheetActions::allowBlackBorders);
  EXPECT_TRUE(settings().allowBlackBorders_);
  EXPECT_FALSE(changeIsDue());
}

TEST_F(SheetSwitchesTest, slidersAreTakenAsTheyAre) {
  actions().newBlackBordersThreshold(0.375F);
  EXPECT_EQ(settings().blackBorderAvoidance_, 0.375F);
  actions().newCrossDissolveDuration(2.75F);
  EXPECT_EQ(settings().crossDissolveDuration_, 2.75F);
  EXPECT_FALSE(changeIsDue());
}

TEST_F(SheetSwitchesTest, theFadeGoesByTheRangeOfTheSlider) {
  sheet.dissolveRange = {0.5F, 5};
  tick(crossDissolveView_, true, &SheetActions::setCrossDissolve);
  actions().newCrossDissolveDuration(2.75F);
  view->startNewCycle();
  beat();
  EXPECT_DOUBLE_EQ(view->actualFadingDuration().count(), 1.625);
}

TEST_F(SheetSwitchesTest, theDissolveIsASetting) {
  tick(crossDissolveView_, true, &SheetActions::setCrossDissolve);
  EXPECT_TRUE(settings().crossDissolve_);
  tick(crossDissolveView_, false, &SheetActions::setCrossDissolve);
  EXPECT_FALSE(settings().crossDissolve_);
  EXPECT_FALSE(changeIsDue());
}

TEST_F(SheetSwitchesTest, theHelpTextFollowsTheDeleteKeyOnlyAtTheNextLoad) {
  const double before = view->helpLayer().properties().bounds.size.height;
  tick(enableDeleteView_, true, &SheetActions::setEnableDeleteAtRuntime);
  EXPECT_TRUE(settings().enableDeleteAtRuntime_);
  view->adjustLayersToNewSize({{0, 0}, {1920, 1080}});
  EXPECT_EQ(view->helpLayer().properties().bounds.size.height, before);
  close();
  start();
  EXPECT_GT(view->helpLayer().properties().bounds.size.height, before);
}

TEST_F(SheetSwitchesTest, nothingIsWrittenWhereNoPictureStands) {
  storeList({});
  start();
  const std::string message = view->firstLine();
  log.clear();
  tick(showImagePathView_, false, &SheetActions::setShowImagePath);
  EXPECT_EQ(view->firstLine(), message);
  EXPECT_EQ(log.count(""), 0U);
}

// The picture's description stays beside its name, unless it was never read.
struct SheetInformationTest : SheetViewTest {
  void show(bool withInformation) {
    configure([=](DisplaySettings& s) { s.showImageInfo_ = withInformation; });
    listPictures(1);
    decoder.pictures[path(0)].properties.iptc.emplace().captionAbstract = "A lake";
    start();
    run(Seconds{0.1});
  }
};

TEST_F(SheetInformationTest, comesBackWithItsSwitch) {
  show(true);
  EXPECT_EQ(view->secondLine(), "A lake");
  tick(showImagePathView_, false, &SheetActions::setShowImagePath);
  EXPECT_EQ(view->secondLine(), "A lake");
  tick(showImageInfoView_, false, &SheetActions::setShowImageInfo);
  EXPECT_EQ(view->secondLine(), std::nullopt);
  tick(showImageInfoView_, true, &SheetActions::setShowImageInfo);
  EXPECT_EQ(view->secondLine(), "A lake");
}

TEST_F(SheetInformationTest, isNotThatOfAnotherPicture) {
  show(false);
  tick(showImageInfoView_, true, &SheetActions::setShowImageInfo);
  EXPECT_EQ(view->secondLine(), std::nullopt);
  EXPECT_EQ(view->firstLine(), path(0));
}

}  // namespace
}  // namespace lumivane

// How the preferences sheet opens and closes, and what leads out of it.
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

using enum SheetControl;
using testing::ElementsAre;

struct SheetClosingTest : SheetViewTest {
  SheetClosingTest() {
    pictureFolder.write("b.jpg", "x");
    pictureFolder.write("a.jpg", "x");
    startShow();
  }
  int ended = 0;
  void open() {
    view->preferencesSheet()->beginSheet([this] { ++ended; });
  }
};

TEST_F(SheetClosingTest, storesAndResumes) {
  open();
  EXPECT_TRUE(sheet.shown);
  view->stopAnimation();
  close();
  EXPECT_FALSE(sheet.shown);
  EXPECT_EQ(ended, 1);
  EXPECT_TRUE(log.has("writing defaults (display name = Color LCD)", LogLevel::Information));
  EXPECT_TRUE(log.has("start animation  (id = " + identity() + ")", LogLevel::Information));
  EXPECT_EQ(log.countStartingWith("Scan directory"), 0U);
}

TEST_F(SheetClosingTest, endsBeforeItStoresAndStoresBeforeItResumes) {
  open();
  close();
  std::vector<std::string> said;
  for (const auto& entry : log.entries()) said.push_back(entry.text.substr(0, 15));
  EXPECT_THAT(said, ElementsAre("sheet: apply en", "sheet: ended", "writing default", "start animation"));
}

TEST_F(SheetClosingTest, takesWhatWasTypedButNotConfirmed) {
  open();
  sheet.texts[durationPerImageView_] = "30";
  sheet.texts[initZoomInFactorView_] = "1.5";
  sheet.texts[fontSizeView_] = "44";
  sheet.texts[infoDelayView_] = "99";
  sheet.texts[excludeSizeView_] = "1";
  close();
  const DisplaySettings kept = stored();
  EXPECT_EQ(kept.durationPerImage_, 30);
  EXPECT_EQ(kept.initZoomInFactor_, 1.5F);
  EXPECT_EQ(kept.fontSize_, 44U);
  EXPECT_EQ(kept.infoDelay_, 15) << "half of the new duration";
  EXPECT_EQ(kept.excludeSize_, 50U);
  EXPECT_FALSE(sheet.shown);
}

TEST_F(SheetClosingTest, whatWasTypedMayCallForARescanAtOnce) {
  open();
  sheet.texts[excludekBView_] = "1";
  close();
  EXPECT_TRUE(view->queryIsInProgress());
  runScan();
  EXPECT_TRUE(view->imageFiles().empty()) << "the pictures have a byte each";
}

TEST_F(SheetClosingTest, withARescanDueItStaysUntilThePicturesAreFound) {
  open();
  actions().rescanDirectory();
  EXPECT_TRUE(rescanIsDue());
  close();
  EXPECT_TRUE(view->queryIsInProgress());
  EXPECT_TRUE(sheet.shown);
  EXPECT_FALSE(sheet.enabled(applyView_));
  EXPECT_TRUE(chooserEnabled());
  EXPECT_EQ(ended, 0);
  runScan();
  EXPECT_FALSE(sheet.shown);
  EXPECT_TRUE(sheet.enabled(applyView_));
  EXPECT_EQ(ended, 1);
  EXPECT_THAT(view->imageFiles(), ElementsAre(pictureFolder / "a.jpg", pictureFolder / "b.jpg"));
}

TEST_F(SheetClosingTest, aRescanIsDueOnlyOnce) {
  open();
  actions().rescanDirectory();
  close();
  runScan();
  log.clear();
  open();
  close();
  EXPECT_EQ(log.countStartingWith("Scan directory"), 0U);
  EXPECT_FALSE(sheet.shown);
}

TEST_F(SheetClosingTest, whileAScanRunsItCannotBeClosed) {
  open();
  actions().rescanDirectory();
  close();
  log.clear();
  close();
  EXPECT_TRUE(sheet.shown);
  EXPECT_EQ(log.countStartingWith("writing defaults"), 0U);
  runScan();
}

TEST_F(SheetClosingTest, openedWhileAScanEndsItWaitsForTheNewList) {
  queues.jobTime = std::chrono::seconds(5);  // a long list
  actions().rescanDirectory();
  close();
  while (log.countStartingWith("sheet: ended") == 0) run(Seconds{0.1});
  ASSERT_TRUE(view->queryIsInProgress());
  open();
  EXPECT_FALSE(sheet.enabled(applyView_));
  runScan();
  EXPECT_TRUE(sheet.enabled(applyView_));
  EXPECT_TRUE(sheet.shown) << "this time it is the user who closes it";
  close();
  EXPECT_FALSE(sheet.shown);
}

TEST_F(SheetClosingTest, theDisplayCannotBeSwitchedWhileAScanRuns) {
  displays.all.push_back({2, "Projector", {}, 1});
  start();
  actions().rescanDirectory();
  close();
  choose(currentScreenView_, 1, &SheetActions::changeScreen);
  EXPECT_EQ(view->displayName(), "Color LCD");
  EXPECT_EQ(sheet.selected[currentScreenView_], 0U) << "it shows what is edited";
  runScan();
}

TEST_F(SheetClosingTest, aRescanNamesWhatIsScanned) {
  actions().rescanDirectory();
  EXPECT_TRUE(log.has("Rescan directory: " + pictureFolder.path(), LogLevel::Information));
}

TEST_F(SheetClosingTest, withoutAFolderNothingIsScanned) {
  withFolder = false;
  configure([](DisplaySettings& s) { s.directoryBookmarks_ = emptyBookmarks(); });
  start();
  open();
  log.clear();
  actions().rescanDirectory();
  EXPECT_TRUE(log.has("Rescan directory: (null)", LogLevel::Information));
  EXPECT_FALSE(chooserEnabled());
  close();
  EXPECT_FALSE(view->queryIsInProgress());
  EXPECT_FALSE(sheet.shown);
  EXPECT_TRUE(chooserEnabled());
  EXPECT_EQ(log.countStartingWith("Scan directory"), 0U);
  EXPECT_EQ(log.countStartingWith("writing defaults"), 1U);
  EXPECT_EQ(log.countStartingWith("start animation"), 1U);
}

TEST_F(SheetClosingTest, shownAgainItKeepsItsFirstCaller) {
  open();
  int others = 0;
  view->preferencesSheet()->beginSheet([&others] { ++others; });
  EXPECT_EQ(sheet.begins, 2);
  close();
  EXPECT_EQ(ended, 1);
  EXPECT_EQ(others, 0);
}

// --- What leads out of it ---

TEST_F(SheetClosingTest, helpComesToTheFront) {
  actions().showHelpSheet();
  actions().showHelpSheet();
  EXPECT_EQ(help.shows, 2);
}

TEST_F(SheetClosingTest, linksLeadToThePageTheMailboxAndTheHome) {
  actions().donateDonorbox();
  actions().feedback();
  actions().gotoHomepage();
  EXPECT_THAT(desktop.opened, ElementsAre(kDonationLink.target, kFeedbackLink.target, kHomepageLink.target));
}

TEST_F(SheetClosingTest, leadsNowhereWhereThereIsNothingToLeadTo) {
  helpPanel = nullptr;
  workspace = nullptr;
  start();
  actions().showHelpSheet();
  actions().donateDonorbox();
  actions().feedback();
  actions().gotoHomepage();
  EXPECT_TRUE(desktop.opened.empty());
  EXPECT_EQ(help.shows, 0);
}

}  // namespace
}  // namespace lumivane

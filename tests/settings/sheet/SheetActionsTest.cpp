// What the user does to a control reaches exactly one action, once, with the control readable.
#include <QAbstractButton>
#include <QListWidget>

#include "tests/settings/sheet/SheetTest.h"

namespace lumivane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum SheetControl;

using Row = std::pair<SheetControl, const char*>;

const std::vector<Row> kFields{
    {durationPerImageView_, "setDurationPerImage"},
    {initZoomInFactorView_, "setInitZoomInfactor"},
    {excludeSizeView_, "setExcludeSize"},
    {excludekBView_, "setExcludekB"},
    {fontSizeView_, "setFontSize"},
    {infoDelayView_, "setInfoDelay"},
};

const std::vector<Row> kBoxes{
    {showImagePathView_, "setShowImagePath"},
    {displayFilenameView_, "setDisplayFilename"},
    {showFileExtensionView_, "setShowFileExtension"},
    {showImageInfoView_, "setShowImageInfo"},
    {zoomIsOnView_, "setZoomIsOn"},
    {kenBurnsView_, "setKenBurnsIsOn"},
    {dontRandomizeView_, "dontRandomize"},
    {startWithRandomView_, "startWithRandom"},
    {allowBlackBordersView_, "allowBlackBorders"},
    {crossDissolveView_, "setCrossDissolve"},
    {enableDeleteView_, "setEnableDeleteAtRuntime"},
};

class SheetActionsTest : public SheetTest {};

TEST_F(SheetActionsTest, AFieldTellsOnReturnWhatWasTyped) {
  for (const auto& [control, action] : kFields) {
    sheet_.setText(control, "60");
    std::string seen;
    actions_.whenCalled = [&, field = control] { seen = sheet_.text(field); };
    typeOver(control, "2");
    EXPECT_THAT(told(), IsEmpty()) << action << " came while typing";
    QTest::keyClick(&sheet_.widget(control), Qt::Key_Return);
    EXPECT_THAT(told(), ElementsAre(action));
    EXPECT_EQ(seen, "2");
    EXPECT_TRUE(sheet_.isShown());
    pages().setFocus();
    EXPECT_THAT(told(), IsEmpty()) << action << " came twice";
  }
}

TEST_F(SheetActionsTest, AFieldTellsWhenTheKeysGoElsewhere) {
  for (const auto& [control, action] : kFields) {
    typeOver(control, "7.5e1 x");
    QTest::keyClick(&sheet_.widget(control), Qt::Key_Tab);
    EXPECT_THAT(told(), ElementsAre(action));
    EXPECT_EQ(sheet_.text(control), "7.5e1 x");
  }
}

TEST_F(SheetActionsTest, AFieldThatIsOnlyVisitedTellsNothing) {
  for (const auto& [control, action] : kFields) {
    reach(control).setFocus();
    QTest::keyClick(&sheet_.widget(control), Qt::Key_Return);
    QTest::keyClick(&sheet_.widget(control), Qt::Key_Tab);
    EXPECT_THAT(told(), IsEmpty()) << action;
  }
}

TEST_F(SheetActionsTest, WhatIsWrittenBackDuringTheActionIsNotTold) {
  actions_.whenCalled = [&] { sheet_.setText(durationPerImageView_, "60"); };
  typeOver(durationPerImageView_, "2");
  QTest::keyClick(&sheet_.widget(durationPerImageView_), Qt::Key_Return);
  EXPECT_THAT(told(), ElementsAre("setDurationPerImage"));
  pages().setFocus();
  EXPECT_EQ(sheet_.text(durationPerImageView_), "60");
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(SheetActionsTest, ACheckBoxTellsByMouseAndByKey) {
  for (const auto& [control, action] : kBoxes) {
    bool seen = false;
    actions_.whenCalled = [&, box = control] { seen = sheet_.isOn(box); };
    click(control);
    EXPECT_THAT(told(), ElementsAre(action));
    EXPECT_TRUE(seen) << action;
    QTest::keyClick(&sheet_.widget(control), Qt::Key_Space);
    EXPECT_THAT(told(), ElementsAre(action));
    EXPECT_FALSE(seen) << action;
  }
}

TEST_F(SheetActionsTest, TheMethodTellsOnceForThePair) {
  sheet_.setOn(useSpotlightView_, true);
  std::vector<bool> seen;
  actions_.whenCalled = [&] {
    seen.push_back(sheet_.isOn(useSpotlightView_));
    seen.push_back(sheet_.isOn(useDirectorySearchView_));
  };
  click(useDirectorySearchView_);
  EXPECT_THAT(told(), ElementsAre("setUseSpotlight"));
  EXPECT_THAT(seen, ElementsAre(false, true));
  click(useDirectorySearchView_);
  EXPECT_THAT(told(), IsEmpty()) << "it was chosen already";
  seen.clear();
  click(useSpotlightView_);
  EXPECT_THAT(told(), ElementsAre("setUseSpotlight"));
  EXPECT_THAT(seen, ElementsAre(true, false));
}

TEST_F(SheetActionsTest, TheSourceTellsWhichOfThePairWasChosen) {
  sheet_.setOn(useDirectoryTreeView_, true);
  click(useAlbumView_);
  EXPECT_THAT(told(), ElementsAre("setUseAlbum"));
  click(useDirectoryTreeView_);
  EXPECT_THAT(told(), ElementsAre("setUseDirectoryTree"));
}

TEST_F(SheetActionsTest, AnAlbumModeThatIsRefusedGoesBack) {
  sheet_.setOn(useDirectoryTreeView_, true);
  actions_.whenCalled = [&] {
    sheet_.setOn(useDirectoryTreeView_, true);
    sheet_.setOn(useAlbumView_, false);
  };
  click(useAlbumView_);
  EXPECT_THAT(told(), ElementsAre("setUseAlbum"));
  EXPECT_TRUE(sheet_.isOn(useDirectoryTreeView_));
  EXPECT_FALSE(sheet_.isOn(useAlbumView_));
}

TEST_F(SheetActionsTest, SlidersTellTheirNumberWithinTheirRange) {
  const SliderRange dissolve = sheet_.sliderRange(crossDissolveDurationSlider_);
  EXPECT_EQ(dissolve.minimum, 0.5F);
  EXPECT_EQ(dissolve.maximum, 10.0F);
  const SliderRange threshold = sheet_.sliderRange(blackBordersThresholdSlider_);
  EXPECT_EQ(threshold.minimum, 0.0F);
  EXPECT_EQ(threshold.maximum, 1.0F);

  sheet_.setSlider(crossDissolveDurationSlider_, 5);
  reach(crossDissolveDurationSlider_).setFocus();
  QTest::keyClick(&sheet_.widget(crossDissolveDurationSlider_), Qt::Key_Right);
  EXPECT_THAT(told(), ElementsAre("newCrossDissolveDuration"));
  EXPECT_THAT(std::exchange(actions_.numbers, {}), ElementsAre(5.1F));
  QTest::keyClick(&sheet_.widget(crossDissolveDurationSlider_), Qt::Key_End);
  EXPECT_THAT(std::exchange(actions_.numbers, {}), ElementsAre(10.0F));

  sheet_.setSlider(blackBordersThresholdSlider_, 0);
  reach(blackBordersThresholdSlider_).setFocus();
  QTest::keyClick(&sheet_.widget(blackBordersThresholdSlider_), Qt::Key_PageUp);
  EXPECT_THAT(std::exchange(actions_.numbers, {}), ElementsAre(0.1F));
  QTest::keyClick(&sheet_.widget(blackBordersThresholdSlider_), Qt::Key_End);
  EXPECT_THAT(actions_.numbers, ElementsAre(1.0F));
}

TEST_F(SheetActionsTest, ChoosingADisplay) {
  sheet_.setItems(currentScreenView_, {"Left", "Right"});
  sheet_.selectItem(currentScreenView_, 0);
  std::optional<std::size_t> seen;
  actions_.whenCalled = [&] { seen = sheet_.selectedItem(currentScreenView_); };
  reach(currentScreenView_).setFocus();
  QTest::keyClick(&sheet_.widget(currentScreenView_), Qt::Key_Down);
  EXPECT_THAT(told(), ElementsAre("changeScreen"));
  EXPECT_EQ(seen, 1U);
}

TEST_F(SheetActionsTest, ChoosingAnAlbum) {
  sheet_.setItems(albumView_, {"Garden", "Hikes"});
  EXPECT_EQ(sheet_.selectedItem(albumView_), std::nullopt);
  std::optional<std::size_t> seen;
  actions_.whenCalled = [&] { seen = sheet_.selectedItem(albumView_); };
  auto& table = dynamic_cast<QListWidget&>(reach(albumView_));
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier,
                    table.visualItemRect(table.item(1)).center());
  EXPECT_THAT(told(), ElementsAre("selectAlbum"));
  EXPECT_EQ(seen, 1U);
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier,
                    table.visualItemRect(table.item(1)).center());
  EXPECT_THAT(told(), IsEmpty()) << "it was chosen already";
  QTest::keyClick(&table, Qt::Key_Up);
  EXPECT_THAT(told(), ElementsAre("selectAlbum"));
  EXPECT_EQ(seen, 0U);
}

TEST_F(SheetActionsTest, SkipPatternsTellThatEditingBeginsAndThatItEnded) {
  sheet_.setText(skipPatternsView_, "a");
  reach(skipPatternsView_).setFocus();
  QTest::keyClick(&sheet_.widget(skipPatternsView_), Qt::Key_End);
  EXPECT_THAT(told(), IsEmpty());
  QTest::keyClicks(&sheet_.widget(skipPatternsView_), "bc");
  EXPECT_THAT(told(), ElementsAre("textDidBeginEditing"));
  QTest::keyClick(&sheet_.widget(skipPatternsView_), Qt::Key_Return);
  QTest::keyClick(&sheet_.widget(skipPatternsView_), Qt::Key_Return, Qt::ShiftModifier);
  QTest::keyClicks(&sheet_.widget(skipPatternsView_), "d");
  EXPECT_THAT(told(), IsEmpty());
  QTest::keyClick(&sheet_.widget(skipPatternsView_), Qt::Key_Tab);
  EXPECT_THAT(told(), ElementsAre("setSkipPatterns"));
  EXPECT_EQ(sheet_.text(skipPatternsView_), "abc\n\nd");
  reach(skipPatternsView_).setFocus();
  pages().setFocus();
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(SheetActionsTest, ButtonsByMouseAndByKey) {
  const std::vector<std::pair<QString, const char*>> buttons{
      {"changeDirectoryView_", "selectDirectory"},
      {"rescanDirectoryView_", "rescanDirectory"},
      {"helpButton_", "showHelpSheet"},
      {"donateButton_", "donateDonorbox"},
      {"feedbackButton_", "feedback"},
      {"homepageButton_", "gotoHomepage"},
      {"applyView_", "closeSheet"},
  };
  for (const auto& [name, action] : buttons) {
    auto* button = sheet_.dialog().findChild<QAbstractButton*>(name);
    ASSERT_NE(button, nullptr) << name.toStdString();
    click(*button);
    EXPECT_THAT(told(), ElementsAre(action));
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
      button->setFocus();
      QTest::keyClick(button, key);
      EXPECT_THAT(told(), ElementsAre(action));
    }
  }
  QTest::keyClick(&sheet_.dialog(), Qt::Key_F1);
  EXPECT_THAT(told(), ElementsAre("showHelpSheet"));
}

TEST_F(SheetActionsTest, ReturnOnACheckBoxPressesNoButton) {
  reach(crossDissolveView_).setFocus();
  QTest::keyClick(&sheet_.widget(crossDissolveView_), Qt::Key_Return);
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(SheetActionsTest, FillingByProgramTellsNobody) {
  for (const auto& [control, name] : kSheetControls) {
    sheet_.setText(control, "1\n2");
    sheet_.setOn(control, true);
    sheet_.setOn(control, false);
    sheet_.setSlider(control, 0.7F);
    sheet_.setItems(control, {"one", "two"});
    sheet_.selectItem(control, 1);
    sheet_.selectItem(control, std::nullopt);
    sheet_.setEnabled(control, false);
    sheet_.setEnabled(control, true);
  }
  sheet_.setProgressSpinning(true);
  sheet_.end();
  sheet_.begin();
  runPendingEvents();
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(SheetActionsTest, WithoutActionsNothingHappens) {
  sheet_.setActions(nullptr);
  click(crossDissolveView_);
  reach(crossDissolveDurationSlider_).setFocus();
  QTest::keyClick(&sheet_.widget(crossDissolveDurationSlider_), Qt::Key_Right);
  typeOver(durationPerImageView_, "2");
  QTest::keyClick(&sheet_.widget(durationPerImageView_), Qt::Key_Return);
  click(applyView_);
  EXPECT_THAT(told(), IsEmpty());
}

}  // namespace
}  // namespace lumivane

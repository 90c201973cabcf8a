// The fields of the preferences sheet that are typed into.
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

using enum SheetControl;

struct SheetNumbersTest : SheetViewTest {
  SheetNumbersTest() { startShow(); }

  void duration(const std::string& typed) {
    type(durationPerImageView_, typed, &SheetActions::setDurationPerImage);
  }
  void zoom(const std::string& typed) {
    type(initZoomInFactorView_, typed, &SheetActions::setInitZoomInfactor);
  }
  void size(const std::string& typed) { type(excludeSizeView_, typed, &SheetActions::setExcludeSize); }
  void kB(const std::string& typed) { type(excludekBView_, typed, &SheetActions::setExcludekB); }
  void patterns(const std::string& typed) { type(skipPatternsView_, typed, &SheetActions::setSkipPatterns); }
  void font(const std::string& typed) { type(fontSizeView_, typed, &SheetActions::setFontSize); }
  void delay(const std::string& typed) { type(infoDelayView_, typed, &SheetActions::setInfoDelay); }
};

TEST_F(SheetNumbersTest, tooShortADurationIsRefused) {
  duration("2");
  EXPECT_EQ(settings().durationPerImage_, 10);
  EXPECT_EQ(sheet.texts[durationPerImageView_], "10");
  EXPECT_FALSE(changeIsDue());
  duration("seconds");
  EXPECT_EQ(settings().durationPerImage_, 10);
  EXPECT_EQ(sheet.texts[durationPerImageView_], "10");
}

TEST_F(SheetNumbersTest, anotherDurationStartsANewCycle) {
  duration("10");
  EXPECT_FALSE(changeIsDue());
  duration("4");
  EXPECT_EQ(settings().durationPerImage_, 4);
  EXPECT_EQ(sheet.texts[durationPerImageView_], "4");
  EXPECT_TRUE(changeIsDue());
}

TEST_F(SheetNumbersTest, aLongerDurationStartsANewCycleToo) {
  duration("3600");
  EXPECT_TRUE(changeIsDue());
}

TEST_F(SheetNumbersTest, aZoomFactorOfOneBecomesALittleMoreWithoutANewCycle) {
  for (const char* typed : {"1.0", "0", "-4", "zoom", ""}) {
    zoom(typed);
    EXPECT_EQ(settings().initZoomInFactor_, 1.1F) << typed;
    EXPECT_EQ(sheet.texts[initZoomInFactorView_], "1.1") << typed;
  }
  EXPECT_FALSE(changeIsDue());
}

TEST_F(SheetNumbersTest, anotherZoomFactorStartsANewCycle) {
  zoom("1.3");
  EXPECT_FALSE(changeIsDue());
  zoom("1,5");
  EXPECT_EQ(settings().initZoomInFactor_, 1.5F);
  EXPECT_EQ(sheet.texts[initZoomInFactorView_], "1.5");
  EXPECT_TRUE(changeIsDue());
}

TEST_F(SheetNumbersTest, theSmallestSideIsComparedAsItWasTyped) {
  size("300");
  EXPECT_TRUE(rescanIsDue()) << "the test's settings have 1";
  EXPECT_EQ(settings().excludeSize_, 300U);
}

TEST_F(SheetNumbersTest, tooSmallASideIsRaisedAndCallsForARescan) {
  size("20");
  EXPECT_EQ(settings().excludeSize_, 50U);
  EXPECT_EQ(sheet.texts[excludeSizeView_], "50");
  EXPECT_TRUE(rescanIsDue());
}

TEST_F(SheetNumbersTest, theSameSideCallsForNothing) {
  size("50");
  sheet.texts[num_images_] = "5";
  sheet.disabled.clear();
  size("50");
  EXPECT_EQ(sheet.count(), "5");
  EXPECT_TRUE(chooserEnabled());
}

TEST_F(SheetNumbersTest, aNegativeSideIsKeptAsEntered) {
  size("-5");
  EXPECT_EQ(settings().excludeSize_, 4294967291U);
  EXPECT_EQ(sheet.texts[excludeSizeView_], "-5");
}

TEST_F(SheetNumbersTest, anotherSizeInKiBCallsForARescan) {
  kB("0");
  EXPECT_FALSE(rescanIsDue());
  kB("7");
  EXPECT_EQ(settings().excludekB_, 7U);
  EXPECT_TRUE(rescanIsDue());
  kB("-1");
  EXPECT_EQ(settings().excludekB_, 4294967295U);
}

TEST_F(SheetNumbersTest, patternsAreTrimmedAndCallForARescan) {
  patterns("  .*/a.*\n\n \n.*/b.*  ");
  EXPECT_EQ(settings().skipPatterns_, (std::vector<std::string>{".*/a.*", ".*/b.*"}));
  EXPECT_EQ(sheet.texts[skipPatternsView_], ".*/a.*\n.*/b.*");
  EXPECT_TRUE(rescanIsDue());
}

TEST_F(SheetNumbersTest, unchangedPatternsCallForNothing) {
  patterns(".*/thumb.*");
  EXPECT_FALSE(rescanIsDue());
  EXPECT_EQ(settings().skipPatterns_, std::vector<std::string>{".*/thumb.*"});
}

TEST_F(SheetNumbersTest, noPatternsAreNoPatterns) {
  patterns("");
  EXPECT_TRUE(settings().skipPatterns_.empty());
  EXPECT_TRUE(rescanIsDue());
  sheet.texts[num_images_] = "5";
  patterns("");
  EXPECT_EQ(sheet.count(), "5") << "nothing has changed since";
}

TEST_F(SheetNumbersTest, aRescanIsDueAsSoonAsPatternsAreEdited) {
  actions().textDidBeginEditing();
  EXPECT_TRUE(rescanIsDue());
}

TEST_F(SheetNumbersTest, aRescanIsDueAsSoonAsAFieldIsEdited) {
  actions().controlTextDidBeginEditing();
  EXPECT_TRUE(rescanIsDue());
}

TEST_F(SheetNumbersTest, theFontSizeHasBothLimitsAndShowsAtOnce) {
  font("5");
  EXPECT_EQ(settings().fontSize_, 10U);
  EXPECT_EQ(sheet.texts[fontSizeView_], "10");
  EXPECT_EQ(text.measured.back().style.fontSizePt, 10);
  font("100");
  EXPECT_EQ(settings().fontSize_, 72U);
  EXPECT_EQ(text.measured.back().style.fontSizePt, 72);
  font("-3");
  EXPECT_EQ(settings().fontSize_, 72U);
  font("33");
  EXPECT_EQ(text.measured.back().style.fontSizePt, 33);
}

TEST_F(SheetNumbersTest, theInformationComesInTheFirstHalfOfAPicturesTime) {
  duration("60");
  delay("40");
  EXPECT_EQ(settings().infoDelay_, 30);
  EXPECT_EQ(sheet.texts[infoDelayView_], "30");
  duration("7");
  delay("40");
  EXPECT_EQ(settings().infoDelay_, 3);
  delay("-1");
  EXPECT_EQ(settings().infoDelay_, 0);
  EXPECT_EQ(sheet.texts[infoDelayView_], "0");
}

TEST_F(SheetNumbersTest, nothingIsStoredBeforeTheSheetIsClosed) {
  duration("33");
  EXPECT_EQ(stored().durationPerImage_, 10);
  close();
  EXPECT_EQ(stored().durationPerImage_, 33);
}

}  // namespace
}  // namespace lumivane

#include "settings/SheetRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();

TEST(SheetRules, readsTheNumberThatATextBeginsWith) {
  EXPECT_EQ(wholeNumberOfField("42"), 42);
  EXPECT_EQ(wholeNumberOfField("  42 seconds"), 42);
  EXPECT_EQ(wholeNumberOfField("12.9"), 12);
  EXPECT_EQ(wholeNumberOfField("-7"), -7);
  EXPECT_EQ(wholeNumberOfField("+7"), 7);
  for (const char* none : {"", " ", "seconds", "-", "+", "+-7", "--7", "0x"})
    EXPECT_EQ(wholeNumberOfField(none), 0) << none;
}

TEST(SheetRules, aNumberThatIsTooLongBecomesTheLargest) {
  EXPECT_EQ(wholeNumberOfField("2147483647"), kLargest);
  EXPECT_EQ(wholeNumberOfField("2147483648"), kLargest);
  EXPECT_EQ(wholeNumberOfField("99999999999999999999999"), kLargest);
  EXPECT_EQ(wholeNumberOfField("-99999999999999999999999"), kSmallest);
}

TEST(SheetRules, readsDecimalsWithPointOrComma) {
  EXPECT_EQ(decimalNumberOfField("1.5"), 1.5F);
  EXPECT_EQ(decimalNumberOfField(" 1,5x"), 1.5F);
  EXPECT_EQ(decimalNumberOfField("+1,25"), 1.25F);
  EXPECT_EQ(decimalNumberOfField("-3"), -3.0F);
  EXPECT_EQ(decimalNumberOfField("1.234,5"), 1.234F);
  EXPECT_EQ(decimalNumberOfField(".5"), 0.5F);
  for (const char* none : {"", "zoom", "inf", "-inf", "nan", "+", ","})
    EXPECT_EQ(decimalNumberOfField(none), 0.0F) << none;
}

TEST(SheetRules, decimalsBeyondTheRangeBecomeTheNearest) {
  EXPECT_EQ(decimalNumberOfField("1e60"), std::numeric_limits<float>::max());
  EXPECT_EQ(decimalNumberOfField("-1e60"), -std::numeric_limits<float>::max());
  EXPECT_EQ(decimalNumberOfField("1e-60"), 0.0F);
  EXPECT_EQ(decimalNumberOfField("1e999"), 0.0F) << "no number at all";
}

TEST(SheetRules, whatAFieldShowsReadsAsTheSameNumber) {
  for (const std::int32_t number : {0, 60, -1, kLargest, kSmallest})
    EXPECT_EQ(wholeNumberOfField(fieldText(number)), number);
  for (const std::uint32_t number : {0U, 300U, 4294967295U, 2147483648U})
    EXPECT_EQ(static_cast<std::uint32_t>(wholeNumberOfField(fieldText(number))), number);
  for (const float number : {1.3F, 1.1F, 0.0F, 1.0000001F, 2.75F})
    EXPECT_EQ(decimalNumberOfField(fieldText(number)), number);
  EXPECT_EQ(fieldText(1.3F), "1.3");
  EXPECT_EQ(fieldText(4294967291U), "-5");
}

TEST(SheetRules, tooShortADurationIsRefused) {
  EXPECT_EQ(acceptedDuration(4, 60), 4);
  EXPECT_EQ(acceptedDuration(3, 60), 60);
  EXPECT_EQ(acceptedDuration(-10, 60), 60);
  EXPECT_EQ(acceptedDuration(2, 1), 1) << "even one that could not be entered stays";
}

TEST(SheetRules, aZoomFactorThatDoesNotZoomBecomesASmallOne) {
  for (const float entered : {1.0F, 0.5F, 0.0F, -2.0F, std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(acceptedZoomInFactor(entered, 1.3F).initZoomInFactor, 1.1F);
    EXPECT_FALSE(acceptedZoomInFactor(entered, 1.3F).startsNewCycle);
  }
}

TEST(SheetRules, onlyAnotherZoomFactorStartsANewCycle) {
  EXPECT_EQ(acceptedZoomInFactor(1.5F, 1.3F).initZoomInFactor, 1.5F);
  EXPECT_TRUE(acceptedZoomInFactor(1.5F, 1.3F).startsNewCycle);
  EXPECT_TRUE(acceptedZoomInFactor(1.2F, 1.3F).startsNewCycle);
  EXPECT_FALSE(acceptedZoomInFactor(1.3F, 1.3F).startsNewCycle);
  // The next float above 1.3 is 1.19e-7 away, within 1.3 times the epsilon; the one after it is not.
  const float next = std::nextafter(1.3F, 2.0F);
  EXPECT_FALSE(acceptedZoomInFactor(next, 1.3F).startsNewCycle);
  EXPECT_TRUE(acceptedZoomInFactor(std::nextafter(next, 2.0F), 1.3F).startsNewCycle);
}

TEST(SheetRules, theSmallestSideIsAtLeastFifty) {
  EXPECT_EQ(acceptedExcludeSize(20), 50U);
  EXPECT_EQ(acceptedExcludeSize(50), 50U);
  EXPECT_EQ(acceptedExcludeSize(51), 51U);
  EXPECT_EQ(acceptedExcludeSize(-5), 4294967291U) << "kept as entered";
}

TEST(SheetRules, theFontSizeHasBothLimits) {
  EXPECT_EQ(acceptedFontSize(5), 10U);
  EXPECT_EQ(acceptedFontSize(10), 10U);
  EXPECT_EQ(acceptedFontSize(72), 72U);
  EXPECT_EQ(acceptedFontSize(100), 72U);
  EXPECT_EQ(acceptedFontSize(-1), 72U);
}

TEST(SheetRules, theInformationComesInTheFirstHalfOfAPicturesTime) {
  EXPECT_EQ(acceptedInfoDelay(40, 60), 30);
  EXPECT_EQ(acceptedInfoDelay(40, 7), 3);
  EXPECT_EQ(acceptedInfoDelay(-1, 60), 0);
  EXPECT_EQ(acceptedInfoDelay(30, 60), 30);
  EXPECT_EQ(acceptedInfoDelay(5, -10), 0) << "a stored duration may be anything";
}

TEST(SheetRules, patternsAreTrimmedLines) {
  EXPECT_THAT(skipPatternsOf("  .*/a.*  \n\n \t \n.*/b c.*\r\n.*/a.*"),
              ElementsAre(".*/a.*", ".*/b c.*", ".*/a.*"));
  EXPECT_THAT(skipPatternsOf(""), IsEmpty());
  EXPECT_THAT(skipPatternsOf("\n \n"), IsEmpty());
}

TEST(SheetRules, whiteSpaceOfAllScriptsIsTrimmed) {
  // A no-break space, an ideographic space, a next line, a line separator.
  EXPECT_THAT(skipPatternsOf("\u00A0\u3000x\u00E9\u0085\u2028"), ElementsAre("x\u00E9"));
  EXPECT_THAT(skipPatternsOf("\xFFx\xFF "), ElementsAre("\xFFx\xFF")) << "what is no UTF-8 stays";
}

}  // namespace
}  // namespace lumivane

#include "collection/SkipPatterns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

class SkipPatternsTest : public testing::Test {
 protected:
  bool matches(std::vector<std::string> lines, std::string_view path) {
    return SkipPatterns(std::move(lines), log_).matchesSkipPattern(path);
  }
  RecordingLog log_;
};

TEST_F(SkipPatternsTest, DefaultPatternSkipsThumbnails) {
  SkipPatterns patterns({".*/thumb.*"}, log_);
  EXPECT_TRUE(patterns.matchesSkipPattern("/Pictures/thumbs/a.jpg"));
  EXPECT_TRUE(patterns.matchesSkipPattern("/Pictures/thumb.jpg"));
  EXPECT_FALSE(patterns.matchesSkipPattern("/Pictures/Thumbs/a.jpg"));
  EXPECT_THAT(log_.entries(), testing::IsEmpty());
}

TEST_F(SkipPatternsTest, MustCoverTheWholePath) {
  EXPECT_FALSE(matches({"IMG"}, "/x/IMG_1.jpg"));
  EXPECT_TRUE(matches({".*IMG.*"}, "/x/IMG_1.jpg"));
  EXPECT_FALSE(matches({".*IMG"}, "/x/IMG_1.jpg"));
}

TEST_F(SkipPatternsTest, TakesTheFirstMatchAndTriesNoOther) {
  EXPECT_FALSE(matches({"a|ab"}, "ab"));
  EXPECT_TRUE(matches({"ab|a"}, "ab"));
  EXPECT_TRUE(matches({"a|ab"}, "a"));
}

TEST_F(SkipPatternsTest, BlankLinesAndBlanksAroundALineDoNotCount) {
  EXPECT_FALSE(matches({"", "   ", " \t\r"}, ""));
  EXPECT_TRUE(matches({"", " \t.*IMG.* \r"}, "/x/IMG_1.jpg"));
  EXPECT_TRUE(matches({"\xC2\xA0.*IMG.*\xE2\x80\xA8"}, "/x/IMG_1.jpg"));
  EXPECT_THAT(log_.entries(), testing::IsEmpty());
}

TEST_F(SkipPatternsTest, InvalidLineIsLoggedOnceAndTheOthersWork) {
  SkipPatterns patterns({" ( ", ".*IMG.*"}, log_);
  EXPECT_THAT(log_.entries(), testing::IsEmpty()) << "compiled before its first use";
  EXPECT_TRUE(patterns.matchesSkipPattern("/x/IMG_1.jpg"));
  EXPECT_FALSE(patterns.matchesSkipPattern("/x/y.jpg"));
  ASSERT_EQ(log_.entries().size(), 1U);
  EXPECT_EQ(log_.entries()[0].level, LogLevel::Error);
  EXPECT_THAT(log_.entries()[0].text, testing::StartsWith("Error in regexp: (\n   error message: U_REGEX_"));
}

TEST_F(SkipPatternsTest, WithoutAValidPatternNothingIsSkipped) {
  EXPECT_FALSE(matches({}, "/x/y.jpg"));
  EXPECT_FALSE(matches({"[", "*"}, "/x/y.jpg"));
  EXPECT_EQ(log_.countStartingWith("Error in regexp: "), 2U);
}

TEST_F(SkipPatternsTest, DotAndAnchorsKeepToTheirMeaning) {
  EXPECT_FALSE(matches({".*"}, "/x/line\nbreak.jpg"));
  EXPECT_TRUE(matches({"^/x/.*$"}, "/x/y.jpg"));
  EXPECT_FALSE(matches({".*\\.JPG"}, "/x/y.jpg"));
}

TEST_F(SkipPatternsTest, CharactersCountAsCharacters) {
  EXPECT_TRUE(matches({"/./caf\xC3\xA9\\.jpg"}, "/\xF0\x9F\x8F\x94/caf\xC3\xA9.jpg"));
  EXPECT_TRUE(matches({"/.*"}, "/latin1-\xE9.jpg")) << "bytes that are no text are characters of some kind";
}

TEST_F(SkipPatternsTest, CatastrophicPatternDoesNotHang) {
  SkipPatterns patterns({"(a+)+b", ".*last.*"}, log_);
  const std::string path(64, 'a');
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_FALSE(patterns.matchesSkipPattern(path));
  EXPECT_FALSE(patterns.matchesSkipPattern(path));
  EXPECT_TRUE(patterns.matchesSkipPattern("/last.jpg")) << "the other patterns still count";
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
  EXPECT_TRUE(log_.has("Skip pattern takes too long: (a+)+b !", LogLevel::Error));
  EXPECT_EQ(log_.entries().size(), 1U);
}

TEST_F(SkipPatternsTest, CatastrophicPatternIsGivenUpAtLast) {
  SkipPatterns patterns({"(a+)+b"}, log_);
  EXPECT_TRUE(patterns.matchesSkipPattern("aab"));
  const std::string path(64, 'a');
  for (int i = 0; i < 100; ++i) EXPECT_FALSE(patterns.matchesSkipPattern(path));
  EXPECT_FALSE(patterns.matchesSkipPattern("aab"));
}

TEST_F(SkipPatternsTest, ControlCharactersOfAPatternAreEscapedInTheLog) {
  EXPECT_FALSE(matches({"(\x1b[2J"}, "/x"));
  ASSERT_EQ(log_.entries().size(), 1U);
  EXPECT_THAT(log_.entries()[0].text, testing::StartsWith("Error in regexp: (\\x1B[2J\n"));
}

TEST(SkipPatternFaultTest, ATextThatIsAllRightHasNone) {
  EXPECT_FALSE(firstSkipPatternFault(""));
  EXPECT_FALSE(firstSkipPatternFault("\n\n  \n"));
  EXPECT_FALSE(firstSkipPatternFault(".*/thumb.*\n  .*\\.tmp\\.jpg \n"));
  EXPECT_FALSE(firstSkipPatternFault("\xFF.*"));
}

TEST(SkipPatternFaultTest, TellsTheLineThePlaceAndWhatIsWrong) {
  EXPECT_EQ(firstSkipPatternFault("  (a"), (SkipPatternFault{1, 2, "a round bracket has no counterpart"}));
  EXPECT_EQ(firstSkipPatternFault(".*\n\n [a"), (SkipPatternFault{3, 2, "a square bracket is not closed"}));
  EXPECT_EQ(firstSkipPatternFault("a{3,2}\n("),
            (SkipPatternFault{1, 6, "the second number between curly brackets is the smaller one"}));
  EXPECT_EQ(firstSkipPatternFault("[z-a]")->reason,
            "a range between square brackets is backwards or unfinished");
  EXPECT_EQ(firstSkipPatternFault("*")->reason, "this is no regular expression");
}

TEST_F(SkipPatternsTest, AFaultIsToldExactlyWhenAPatternIsLeftOut) {
  for (const char* pattern : {"(",           ")",
                              "[",           "]",
                              "a{",          "a{1",
                              "\\",          "\\Q",
                              "(?<a",        "(?z)",
                              "\\1",         "(?<=a*)",
                              "{",           "a**",
                              "a+",          "\\p{Nonsense}",
                              "\\x{110000}", "\\d",
                              "^$",          "|",
                              ".*",          "a{999999999999}"}) {
    log_.clear();
    (void)matches({pattern}, "x");
    EXPECT_EQ(firstSkipPatternFault(pattern).has_value(), !log_.entries().empty()) << pattern;
  }
}

}  // namespace
}  // namespace lumivane

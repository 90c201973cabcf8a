#include "platform/PrintableText.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

TEST(IsValidUtf8, AcceptsEveryLengthOfCharacter) {
  EXPECT_TRUE(isValidUtf8(""));
  EXPECT_TRUE(isValidUtf8("plain"));
  EXPECT_TRUE(isValidUtf8("caf\xC3\xA9 \xE3\x81\x82 \xF0\x9F\x8F\x94"));
  EXPECT_TRUE(isValidUtf8("\xF4\x8F\xBF\xBF"));  // U+10FFFF
  EXPECT_TRUE(isValidUtf8(std::string_view("\0", 1)));
}

TEST(IsValidUtf8, RefusesEverythingElse) {
  EXPECT_FALSE(isValidUtf8("\x80"));              // a continuation with nothing before it
  EXPECT_FALSE(isValidUtf8("\xC0\xAF"));          // overlong "/"
  EXPECT_FALSE(isValidUtf8("\xE0\x80\xAF"));      // overlong in three bytes
  EXPECT_FALSE(isValidUtf8("\xF0\x80\x80\xAF"));  // overlong in four
  EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));      // a surrogate
  EXPECT_FALSE(isValidUtf8("\xF4\x90\x80\x80"));  // above U+10FFFF
  EXPECT_FALSE(isValidUtf8("\xF5\x80\x80\x80"));
  EXPECT_FALSE(isValidUtf8("cut \xF0\x9F\x98"));
  EXPECT_FALSE(isValidUtf8("latin1-\xE9t\xE9"));
}

TEST(Printable, LeavesReadableTextAlone) {
  EXPECT_EQ(printable("caf\xC3\xA9 100% back\\slash"), "caf\xC3\xA9 100% back\\slash");
  EXPECT_EQ(printable("\xF0\x9F\x8F\x94"), "\xF0\x9F\x8F\x94");
}

TEST(Printable, EscapesControlCharacters) {
  EXPECT_EQ(printable("a\nb\tc\x07"), "a\\x0Ab\\x09c\\x07");
  EXPECT_EQ(printable("\x1B[31m"), "\\x1B[31m");
  EXPECT_EQ(printable("\x7F"), "\\x7F");
  EXPECT_EQ(printable("\xC2\x9B"), "\\xC2\\x9B");  // C1: control sequence introducer
  EXPECT_EQ(printable(std::string_view("\0", 1)), "\\x00");
}

TEST(Printable, EscapesWhatWouldReorderOrBreakTheLine) {
  EXPECT_EQ(printable("\xE2\x80\xAEgpj.exe"), "\\xE2\\x80\\xAEgpj.exe");
  EXPECT_EQ(printable("\xE2\x81\xA6"), "\\xE2\\x81\\xA6");
  EXPECT_EQ(printable("a\xE2\x80\xA8"
                      "b"),
            "a\\xE2\\x80\\xA8"
            "b");
}

TEST(Printable, EscapesEachByteThatIsNotText) {
  EXPECT_EQ(printable("latin1-\xE9t\xE9"), "latin1-\\xE9t\\xE9");
  EXPECT_EQ(printable("cut-\xF0\x9F\x98.jpg"), "cut-\\xF0\\x9F\\x98.jpg");
}

TEST(Printable, ResultIsAlwaysValidUtf8) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string bytes{static_cast<char>(first), static_cast<char>(second), 'x'};
      EXPECT_TRUE(isValidUtf8(printable(bytes))) << first << ' ' << second;
    }
  }
}

TEST(LossyAscii, ReplacesEachByteAbove127) {
  EXPECT_EQ(lossyAscii("caf\xC3\xA9\n"), "caf??\n");
  EXPECT_EQ(lossyAscii(""), "");
}

}  // namespace
}  // namespace lumivane

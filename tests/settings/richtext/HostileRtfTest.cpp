// Documents that are broken, cut off or made to do harm; and the one that we ship, broken in every way we can think of.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

#include "platform/PrintableText.h"
#include "settings/richtext/RtfReader.h"

namespace lumivane {
namespace {

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

std::string errorOf(const std::string& rtf) {
  const Result<RichText> document = readRtf(rtf);
  return document.ok() ? "none" : document.error();
}

TEST(HostileRtfTest, WhatIsNoRtf) {
  for (const char* text :
       {"text", "", "{", "{}", "{\\html x}", "}", "\\rtf1 x", "{{\\x}\\rtf1}", "{x\\rtf1}", "{\\*\\rtf1}"}) {
    EXPECT_NE(errorOf(text), "none") << text;
  }
  EXPECT_EQ(errorOf("%PDF-1.7"), "it does not begin with {\\rtf");
}

TEST(HostileRtfTest, WhatIsCutOff) {
  EXPECT_EQ(errorOf("{\\rtf1 a{b}"), "it ends in the middle of a group");
  EXPECT_EQ(errorOf("{\\rtf1 a\\"), "it ends in a backslash");
  EXPECT_EQ(errorOf("{\\rtf1 a\\'4"), "a character's number is cut off");
  EXPECT_EQ(errorOf("{\\rtf1 \\bin999999 x}"), "binary data reach beyond its end");
}

TEST(HostileRtfTest, WhatIsTooMuch) {
  EXPECT_EQ(errorOf("{\\rtf1 " + repeated("{", 100)), "its groups are too deep");
  EXPECT_EQ(errorOf("{\\rtf1 " + repeated("\\par", 30'000) + "}"), "it has too many paragraphs");
  EXPECT_EQ(errorOf("{\\rtf1 " + repeated("\\b a\\b0 a", 150'000) + "}"), "it changes its looks too often");
  EXPECT_EQ(errorOf("{\\rtf1 " + std::string(3 << 20, 'x') + "}"), "it is too large");
  EXPECT_EQ(errorOf("{\\rtf1 \\" + std::string(40, 'x') + "}"), "a control word is too long");
}

TEST(HostileRtfTest, NumbersBeyondMeasureAreBroughtIntoRange) {
  const Result<RichText> document =
      readRtf("{\\rtf1\\li99999999999999999999\\fi-99999999999999999999\\sb-5\\uc999999 a\\u99999999999x" +
              repeated("\\tx720", 100) + "\\bin-7 \\outlinelevel-3\\f-1 \\par}");
  ASSERT_TRUE(document.ok()) << document.error();
  ASSERT_EQ(document.value().paragraphs.size(), 1U);
  const RichTextParagraph& paragraph = document.value().paragraphs[0];
  EXPECT_EQ(paragraph.leftIndent, 1000);
  EXPECT_EQ(paragraph.firstLineIndent, -1000);
  EXPECT_EQ(paragraph.spaceBefore, 0);
  EXPECT_LE(paragraph.tabStops.size(), 16U);
  EXPECT_EQ(paragraph.headingLevel, 1);
}

std::string shippedDocument() {
  std::ifstream file(LUMIVANE_HELP_DOCUMENT, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Whatever was read must be fit to be shown.
void expectSound(const Result<RichText>& document) {
  if (!document.ok()) return;
  for (const RichTextParagraph& paragraph : document.value().paragraphs) {
    for (const RichTextSpan& span : paragraph.spans) {
      ASSERT_TRUE(isValidUtf8(span.text));
      ASSERT_LE(span.link, document.value().links.size());
    }
  }
}

TEST(HostileRtfTest, TheShippedDocumentCutOffAnywhere) {
  const std::string whole = shippedDocument();
  ASSERT_TRUE(readRtf(whole).ok()) << readRtf(whole).error();
  const std::size_t step = whole.size() / 300 + 1;
  for (std::size_t size = 0; size + 2 < whole.size(); size += step) {
    EXPECT_FALSE(readRtf(std::string_view(whole).substr(0, size)).ok()) << size;
  }
}

TEST(HostileRtfTest, TheShippedDocumentWithBytesExchanged) {
  const std::string whole = shippedDocument();
  ASSERT_FALSE(whole.empty());
  std::mt19937 random(20'241'121);
  const std::string_view favourites = "{}\\*'u-9\n";
  for (int round = 0; round < 400; ++round) {
    std::string broken = whole;
    for (int i = 0; i < 4; ++i) {
      const bool favourite = random() % 2 == 0;
      broken[random() % broken.size()] =
          favourite ? favourites[random() % favourites.size()] : static_cast<char>(random() % 256);
    }
    expectSound(readRtf(broken));
  }
}

}  // namespace
}  // namespace lumivane

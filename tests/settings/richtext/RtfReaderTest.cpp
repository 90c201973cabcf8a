#include "settings/richtext/RtfReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumivane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

RichText documentOf(const std::string& rtf) {
  Result<RichText> document = readRtf(rtf);
  EXPECT_TRUE(document.ok()) << rtf << ": " << (document.ok() ? "" : document.error());
  return document.ok() ? std::move(document).value() : RichText{};
}

// The text of each paragraph.
std::vector<std::string> textsOf(const std::string& rtf) {
  std::vector<std::string> texts;
  for (const RichTextParagraph& paragraph : documentOf(rtf).paragraphs) {
    std::string& text = texts.emplace_back();
    for (const RichTextSpan& span : paragraph.spans) text += span.text;
  }
  return texts;
}

RichTextSpan plain(std::string text) {
  return {.text = std::move(text)};
}

TEST(RtfReaderTest, TellsParagraphsApart) {
  EXPECT_THAT(textsOf("{\\rtf1\\ansi First.\\par Second.\\par\r\nThird}"),
              ElementsAre("First.", "Second.", "Third"));
  EXPECT_THAT(textsOf("{\\rtf1}"), IsEmpty());
  EXPECT_THAT(textsOf("{\\rtf1 a\\par\\par b\\par}"), ElementsAre("a", "", "b"));
  EXPECT_THAT(textsOf("{\\rtf1 a\\\nb\\\r\n c}\n\0 rest"), ElementsAre("a", "b", " c"));
}

TEST(RtfReaderTest, LooksEndWithTheirGroup) {
  const RichText document =
      documentOf("{\\rtf1 a{\\b b\\i c}d\\b e\\b0 f\\ul g\\ulnone h\\b\\i\\ul\\plain i}");
  ASSERT_THAT(document.paragraphs, SizeIs(1));
  EXPECT_THAT(document.paragraphs[0].spans,
              ElementsAre(plain("a"), RichTextSpan{.text = "b", .bold = true},
                          RichTextSpan{.text = "c", .bold = true, .italic = true}, plain("d"),
                          RichTextSpan{.text = "e", .bold = true}, plain("f"),
                          RichTextSpan{.text = "g", .underlined = true}, plain("hi")));
}

TEST(RtfReaderTest, KnowsFontsOfFixedPitch) {
  const RichText document = documentOf(
      "{\\rtf1\\deff0{\\fonttbl{\\f0\\fswiss Sans;}{\\f1\\fmodern Mono;}{\\f2\\fnil\\fprq1 Other;}}a\\f1 "
      "b\\f0 c{\\f2 d}}");
  ASSERT_THAT(document.paragraphs, SizeIs(1));
  EXPECT_THAT(document.paragraphs[0].spans,
              ElementsAre(plain("a"), RichTextSpan{.text = "b", .fixedPitch = true}, plain("c"),
                          RichTextSpan{.text = "d", .fixedPitch = true}));
}

TEST(RtfReaderTest, ParagraphsHaveHeadingsIndentsAndTabs) {
  const RichText document = documentOf(
      "{\\rtf1\\pard\\outlinelevel0\\sb240\\sa120 Head\\par\\pard\\li2200\\fi-2200\\tx2200 space\\tab "
      "Pause\\par"
      "{\\pard\\outlinelevel99 Deep\\par}again\\par\\pard plain\\par}");
  ASSERT_THAT(document.paragraphs, SizeIs(5));
  EXPECT_EQ(document.paragraphs[0].headingLevel, 1);
  EXPECT_EQ(document.paragraphs[0].spaceBefore, 12);
  EXPECT_EQ(document.paragraphs[0].spaceAfter, 6);
  EXPECT_EQ(document.paragraphs[1].headingLevel, 0);
  EXPECT_EQ(document.paragraphs[1].leftIndent, 110);
  EXPECT_EQ(document.paragraphs[1].firstLineIndent, -110);
  EXPECT_THAT(document.paragraphs[1].tabStops, ElementsAre(110));
  EXPECT_THAT(document.paragraphs[1].spans, ElementsAre(plain("space\tPause")));
  EXPECT_EQ(document.paragraphs[2].headingLevel, 6);
  EXPECT_EQ(document.paragraphs[3].leftIndent, 110) << "the group's own format ended with it";
  EXPECT_EQ(document.paragraphs[4].leftIndent, 0);
}

TEST(RtfReaderTest, CharactersByNumberAndByName) {
  EXPECT_THAT(textsOf("{\\rtf1 caf\\'e9 \\'80 \\'93x\\'94}"), ElementsAre("café € “x”"));
  EXPECT_THAT(textsOf("{\\rtf1 \\u8364?\\u-10179?\\u-8704?!}"), ElementsAre("€😀!"));
  EXPECT_THAT(textsOf("{\\rtf1 a\\emdash b\\bullet\\tab c\\line d\\ldblquote e\\rdblquote}"),
              ElementsAre("a—b•\tc\xE2\x80\xA8"
                          "d“e”"));
  EXPECT_THAT(textsOf("{\\rtf1 \\{\\\\\\}\\~\\_}"), ElementsAre("{\\}\xC2\xA0\xE2\x80\x91"));
  EXPECT_THAT(textsOf("{\\rtf1 \xE9\x01\x7F}"), ElementsAre("é\x7F"));
  EXPECT_THAT(textsOf("{\\rtf1 \\u-10179?x\\u57343?}"), ElementsAre("x\xEF\xBF\xBD"));
}

TEST(RtfReaderTest, FallbacksForOldReadersArePassedOver) {
  EXPECT_THAT(textsOf("{\\rtf1\\uc2\\u8364EUx{\\uc0\\u8364 y}\\u8364\\'45\\'55z}"), ElementsAre("€x€y€z"));
  EXPECT_THAT(textsOf("{\\rtf1{\\u8364}?}"), ElementsAre("€?")) << "the end of a group ends the fallback";
}

TEST(RtfReaderTest, WhatIsNotTextIsPassedOver) {
  EXPECT_THAT(
      textsOf("{\\rtf1{\\colortbl;\\red0\\green0\\blue0;}{\\stylesheet{\\s0 Normal;}}{\\info{\\title T}}"
              "{\\*\\generator x}{\\*\\unknown{deep}}{\\pict 89504e47}{\\header top}text}"),
      ElementsAre("text"));
  EXPECT_THAT(textsOf(std::string("{\\rtf1 a{\\*\\data\\bin5 }}}}}x}b}")), ElementsAre("ab"));
  EXPECT_THAT(textsOf("{\\rtf1\\cf2\\fs48\\whatever7 text}"), ElementsAre("text"));
}

TEST(RtfReaderTest, PicturesInPngStandAmongTheWords) {
  const RichText document = documentOf(
      "{\\rtf1 before {\\pict\\pngblip\\picwgoal2000\\pichgoal1000\n89504E47\n0d0a1A0a}after\\par}");
  ASSERT_THAT(document.pictures, SizeIs(1));
  EXPECT_EQ(document.pictures[0].png, "\x89PNG\r\n\x1A\n");
  EXPECT_EQ(document.pictures[0].width, 100);
  EXPECT_EQ(document.pictures[0].height, 50);
  ASSERT_THAT(document.paragraphs, SizeIs(1));
  EXPECT_THAT(document.paragraphs[0].spans,
              ElementsAre(plain("before "), RichTextSpan{.picture = 1}, plain("after")));
}

TEST(RtfReaderTest, OtherPicturesAreLeftOut) {
  for (const char* picture :
       {"{\\pict\\jpegblip\\picwgoal20\\pichgoal20 ffd8}", "{\\pict\\pngblip 8950}",
        "{\\pict\\pngblip\\picwgoal20 8950}", "{\\pict\\pngblip\\picwgoal20\\pichgoal-20 8950}",
        "{\\pict\\pngblip\\picwgoal20\\pichgoal20 }",
        "{\\*\\unknown{\\pict\\pngblip\\picwgoal20\\pichgoal20 8950}}"}) {
    const RichText document = documentOf("{\\rtf1 " + std::string(picture) + "text}");
    EXPECT_THAT(document.pictures, IsEmpty()) << picture;
    ASSERT_THAT(document.paragraphs, SizeIs(1)) << picture;
    EXPECT_THAT(document.paragraphs[0].spans, ElementsAre(plain("text"))) << picture;
  }
}

TEST(RtfReaderTest, LinksLeadOutside) {
  const RichText document = documentOf(
      "{\\rtf1 See {\\field{\\*\\fldinst{HYPERLINK \"https://example.org/a\"}}{\\fldrslt{\\ul here}}}. "
      "{\\field{\\*\\fldinst HYPERLINK \"mailto:a@example.org\"}{\\fldrslt mail}}}");
  EXPECT_THAT(document.links, ElementsAre("https://example.org/a", "mailto:a@example.org"));
  ASSERT_THAT(document.paragraphs, SizeIs(1));
  EXPECT_THAT(document.paragraphs[0].spans,
              ElementsAre(plain("See "), RichTextSpan{.text = "here", .underlined = true, .link = 1},
                          plain(". "), RichTextSpan{.text = "mail", .link = 2}));
}

TEST(RtfReaderTest, OtherAddressesAreNoLinks) {
  for (const char* instruction : {"HYPERLINK \"file:///etc/passwd\"", "HYPERLINK \"javascript:x\"", "PAGE",
                                  "HYPERLINK", "HYPERLINK \"https://a b\"", "HYPERLINK \"https://x"}) {
    const RichText document =
        documentOf("{\\rtf1 {\\field{\\*\\fldinst " + std::string(instruction) + "}{\\fldrslt text}}}");
    EXPECT_THAT(document.links, IsEmpty()) << instruction;
    ASSERT_THAT(document.paragraphs, SizeIs(1));
    EXPECT_THAT(document.paragraphs[0].spans, ElementsAre(plain("text"))) << instruction;
  }
}

}  // namespace
}  // namespace lumivane

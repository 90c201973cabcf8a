#include "platform/linux/TextFonts.h"

#include <fontconfig/fontconfig.h>

#include <stdexcept>

namespace lumivane {
namespace {

std::string fileOf(const char* family) {
  FcPattern* const wanted = FcPatternCreate();
  FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
  FcDefaultSubstitute(wanted);
  FcResult result = FcResultNoMatch;
  FcPattern* const font = FcFontMatch(nullptr, wanted, &result);
  FcChar8* file = nullptr;
  if (font != nullptr) FcPatternGetString(font, FC_FILE, 0, &file);
  const std::string path = file != nullptr ? reinterpret_cast<const char*>(file) : "";
  if (font != nullptr) FcPatternDestroy(font);
  FcPatternDestroy(wanted);
  return path;
}

// A desktop with no fonts but those that a test gives it.
class TextFontsTest : public testing::Test {
 protected:
  ~TextFontsTest() override { FcConfigDestroy(config_); }

  void configure(const std::string& rules) {
    const std::string text = "<?xml version=\"1.0\"?><fontconfig>" + rules + "</fontconfig>";
    ASSERT_TRUE(
        FcConfigParseAndLoadFromMemory(config_, reinterpret_cast<const FcChar8*>(text.c_str()), FcTrue));
  }
  void install(const char* family) {
    const std::string file = fileOf(family);
    ASSERT_TRUE(FcConfigAppFontAddFile(config_, reinterpret_cast<const FcChar8*>(file.c_str()))) << file;
  }
  [[nodiscard]] static std::string alias(const std::string& generic, const std::string& family) {
    return "<alias><family>" + generic + "</family><prefer><family>" + family + "</family></prefer></alias>";
  }
  [[nodiscard]] TextFonts chosen() const { return chooseTextFonts(config_); }

  FcConfig* const config_ = FcConfigCreate();
};

TEST_F(TextFontsTest, withoutAnyFontThereIsNone) {
  EXPECT_EQ(chosen(), TextFonts{});
}

TEST_F(TextFontsTest, aFontOfMixedWidthsDoesNotStandIn) {
  install("DejaVu Sans");
  EXPECT_EQ(chosen(), (TextFonts{"", "DejaVu Sans", ""}));
}

TEST_F(TextFontsTest, whatTheDesktopUsesForFixedWidthStandsIn) {
  configure(alias("monospace", "DejaVu Sans Mono") + alias("sans-serif", "DejaVu Sans"));
  install("DejaVu Sans");
  install("DejaVu Sans Mono");
  EXPECT_EQ(chosen(), (TextFonts{"DejaVu Sans Mono", "DejaVu Sans", ""}));
}

TEST_F(TextFontsTest, anAnswerOfMixedWidthsIsPassedOver) {
  configure(alias("monospace", "DejaVu Sans"));
  install("DejaVu Sans");
  install("DejaVu Sans Mono");
  EXPECT_EQ(chosen().fixedWidth, "DejaVu Sans Mono");
}

// Fontconfig does not count it as one of fixed width: the characters of East Asia are twice as wide as letters.
TEST_F(TextFontsTest, aFontOfTwoWidthsStandsInWhereTheDesktopPrefersIt) {
  configure(alias("monospace", "Noto Sans Mono CJK JP"));
  install("DejaVu Sans Mono");
  install("Noto Sans Mono CJK JP");
  EXPECT_EQ(chosen().fixedWidth, "Noto Sans Mono CJK JP");
}

TEST_F(TextFontsTest, aFontWithoutLettersDoesNotStandIn) {
  configure(alias("monospace", "Noto Color Emoji"));
  install("Noto Color Emoji");
  EXPECT_EQ(chosen().fixedWidth, "");
  EXPECT_EQ(chosen().emoji, "Noto Color Emoji");
}

TEST_F(TextFontsTest, theWantedFontIsTakenWhereItIs) {
  configure(alias("monospace", "DejaVu Sans Mono") +
            R"(<match target="scan"><test name="family"><string>DejaVu Sans Mono</string></test>)"
            R"(<edit name="family" mode="assign"><string>Andale Mono</string></edit></match>)");
  install("DejaVu Sans Mono");
  EXPECT_EQ(chosen().fixedWidth, "Andale Mono");
}

TEST_F(TextFontsTest, emojiAreToBeColoured) {
  configure(alias("emoji", "DejaVu Sans"));
  install("DejaVu Sans");
  EXPECT_EQ(chosen().emoji, "");
}

TEST_F(TextFontsTest, thisDesktopHasAllThree) {
  const TextFonts fonts = chooseTextFonts();
  EXPECT_NE(fonts.fixedWidth, "");
  EXPECT_NE(fonts.proportional, "");
  EXPECT_NE(fonts.emoji, "");
}

}  // namespace
}  // namespace lumivane

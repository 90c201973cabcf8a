#include "platform/linux/TextFonts.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <memory>

#include FT_FREETYPE_H

namespace lumivane {
namespace {

struct Destroy {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  void operator()(FcObjectSet* objects) const { FcObjectSetDestroy(objects); }
  void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};
using Pattern = std::unique_ptr<FcPattern, Destroy>;
using Fonts = std::unique_ptr<FcFontSet, Destroy>;

Pattern patternOf(const char* family) {
  Pattern pattern(FcPatternCreate());
  if (pattern) FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  return pattern;
}

bool isInstalled(const char* family, FcConfig* config) {
  const Pattern pattern = patternOf(family);
  const std::unique_ptr<FcObjectSet, Destroy> asked(FcObjectSetBuild(FC_FAMILY, nullptr));
  if (!pattern || !asked) return false;
  const Fonts found(FcFontList(config, pattern.get(), asked.get()));
  return found && found->nfont > 0;
}

// What the desktop uses for a family, real or generic, the best first; none where there are no fonts at all.
Fonts fontsFor(const char* family, FcConfig* config) {
  const Pattern pattern = patternOf(family);
  if (!pattern || FcConfigSubstitute(config, pattern.get(), FcMatchPattern) == FcFalse) return nullptr;
  FcDefaultSubstitute(pattern.get());
  FcResult result = FcResultNoMatch;
  return Fonts(FcFontSort(config, pattern.get(), FcFalse, nullptr, &result));
}

FcPattern* bestOf(const Fonts& fonts) {
  return fonts && fonts->nfont > 0 ? fonts->fonts[0] : nullptr;
}

std::string textOf(FcPattern* font, const char* property) {
  FcChar8* text = nullptr;
  if (font == nullptr || FcPatternGetString(font, property, 0, &text) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(text);
}

bool isColoured(FcPattern* font) {
  FcBool coloured = FcFalse;
  return font != nullptr && FcPatternGetBool(font, FC_COLOR, 0, &coloured) == FcResultMatch &&
         coloured == FcTrue;
}

// Looks at the letters themselves. What fontconfig says of a font's spacing is spoilt by a single wide ligature, and by
// the characters of East Asia, which are twice as wide.
class LetterWidths {
 public:
  LetterWidths() {
    if (FT_Init_FreeType(&library_) != 0) library_ = nullptr;
  }
  LetterWidths(const LetterWidths&) = delete;
  LetterWidths& operator=(const LetterWidths&) = delete;
  ~LetterWidths() {
    if (library_ != nullptr) FT_Done_FreeType(library_);
  }

  [[nodiscard]] bool areEqual(FcPattern* font) const {
    int index = 0;
    if (library_ == nullptr || FcPatternGetInteger(font, FC_INDEX, 0, &index) != FcResultMatch) return false;
    FT_Face face = nullptr;
    if (FT_New_Face(library_, textOf(font, FC_FILE).c_str(), index, &face) != 0) return false;
    const FT_Pos width = widthOf(face, 'i');
    bool equal = width > 0;
    for (FT_ULong letter = '!'; equal && letter <= '~'; ++letter) equal = widthOf(face, letter) == width;
    FT_Done_Face(face);
    return equal;
  }

 private:
  // In the font's own units; 0 = it has no such letter, or only pictures of it.
  [[nodiscard]] static FT_Pos widthOf(FT_Face face, FT_ULong letter) {
    const FT_UInt glyph = FT_Get_Char_Index(face, letter);
    if (glyph == 0 || FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE) != 0) return 0;
    return face->glyph->metrics.horiAdvance;
  }

  FT_Library library_ = nullptr;
};

std::string fixedWidthFont(FcConfig* config) {
  if (isInstalled(kWantedFont, config)) return kWantedFont;
  const Fonts fonts = fontsFor("monospace", config);
  const LetterWidths widths;
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    if (widths.areEqual(fonts->fonts[i])) return textOf(fonts->fonts[i], FC_FAMILY);
  }
  return {};
}

}  // namespace

TextFonts chooseTextFonts(_FcConfig* config) {
  const Fonts usual = fontsFor("sans-serif", config);
  const Fonts emoji = fontsFor("emoji", config);
  return {fixedWidthFont(config), textOf(bestOf(usual), FC_FAMILY),
          isColoured(bestOf(emoji)) ? textOf(bestOf(emoji), FC_FAMILY) : std::string()};
}

}  // namespace lumivane

#include "platform/linux/TextFonts.h"

#include <fontconfig/fontconfig.h>

#include <memory>

namespace lumivane {
namespace {

struct Destroy {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  void operator()(FcObjectSet* objects) const { FcObjectSetDestroy(objects); }
  void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};
using Pattern = std::unique_ptr<FcPattern, Destroy>;

Pattern patternOf(const char* family) {
  Pattern pattern(FcPatternCreate());
  if (pattern) FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  return pattern;
}

bool isInstalled(const char* family, FcConfig* config) {
  const Pattern pattern = patternOf(family);
  const std::unique_ptr<FcObjectSet, Destroy> asked(FcObjectSetBuild(FC_FAMILY, nullptr));
  if (!pattern || !asked) return false;
  const std::unique_ptr<FcFontSet, Destroy> found(FcFontList(config, pattern.get(), asked.get()));
  return found && found->nfont > 0;
}

// What the desktop uses for a family, real or generic; nullptr where there are no fonts at all.
Pattern bestFor(const char* family, FcConfig* config) {
  const Pattern pattern = patternOf(family);
  if (!pattern || FcConfigSubstitute(config, pattern.get(), FcMatchPattern) == FcFalse) return nullptr;
  FcDefaultSubstitute(pattern.get());
  FcResult result = FcResultNoMatch;
  return Pattern(FcFontMatch(config, pattern.get(), &result));
}

std::string familyOf(const Pattern& font) {
  FcChar8* family = nullptr;
  if (!font || FcPatternGetString(font.get(), FC_FAMILY, 0, &family) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(family);
}

// Those of East Asia have two widths, one of them twice the other.
bool isFixedWidth(const Pattern& font) {
  int spacing = FC_PROPORTIONAL;
  return font && FcPatternGetInteger(font.get(), FC_SPACING, 0, &spacing) == FcResultMatch &&
         spacing >= FC_DUAL;
}

bool isColoured(const Pattern& font) {
  FcBool coloured = FcFalse;
  return font && FcPatternGetBool(font.get(), FC_COLOR, 0, &coloured) == FcResultMatch && coloured == FcTrue;
}

std::string fixedWidthFont(FcConfig* config) {
  if (isInstalled(kWantedFont, config)) return kWantedFont;
  const Pattern desktops = bestFor("monospace", config);
  return isFixedWidth(desktops) ? familyOf(desktops) : std::string();
}

}  // namespace

TextFonts chooseTextFonts(_FcConfig* config) {
  const Pattern emoji = bestFor("emoji", config);
  return {fixedWidthFont(config), familyOf(bestFor("sans-serif", config)),
          isColoured(emoji) ? familyOf(emoji) : std::string()};
}

}  // namespace lumivane

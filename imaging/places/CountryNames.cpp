#include "imaging/places/CountryNames.h"

#include <unicode/locid.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

namespace lumivane {
namespace {

constexpr const char* kEnglish = "en";

// Asked for a language that it does not have, ICU would answer in that of the process.
bool hasTextsIn(const std::string& language) {
  for (std::int32_t i = 0; i < uloc_countAvailable(); ++i) {
    if (language == uloc_getAvailable(i)) return true;
  }
  return false;
}

}  // namespace

CountryNames::CountryNames(std::string_view locale) : locale_(locale.substr(0, locale.find_first_of(".@"))) {
  const icu::Locale asked = icu::Locale::createFromName(locale_.c_str());
  if (asked.isBogus() || !hasTextsIn(asked.getLanguage())) locale_ = kEnglish;
}

std::string CountryNames::nameOf(std::string_view code) const {
  const icu::Locale country("", std::string(code).c_str());
  icu::UnicodeString name;
  country.getDisplayCountry(icu::Locale::createFromName(locale_.c_str()), name);
  std::string text;
  name.toUTF8String(text);
  return text.empty() ? std::string(code) : text;
}

}  // namespace lumivane

#include "imaging/places/CountryNames.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

TEST(CountryNames, AreInTheUsersLanguage) {
  EXPECT_EQ(CountryNames("en_US").nameOf("DE"), "Germany");
  EXPECT_EQ(CountryNames("de_DE").nameOf("DE"), "Deutschland");
  EXPECT_EQ(CountryNames("fr_FR").nameOf("DE"), "Allemagne");
  EXPECT_EQ(CountryNames("de").nameOf("CI"), "Côte d’Ivoire");
  EXPECT_EQ(CountryNames("ja_JP").nameOf("JP"), "日本");
  EXPECT_EQ(CountryNames("de_DE.UTF-8").nameOf("IT"), "Italien");
  EXPECT_EQ(CountryNames("de_DE@euro").nameOf("IT"), "Italien");
}

TEST(CountryNames, AreEnglishWithoutALanguage) {
  for (const char* locale :
       {"", "C", "POSIX", "C.UTF-8", "tlh_XX", "not a locale", "\xFF\xFE", "../../etc"}) {
    EXPECT_EQ(CountryNames(locale).nameOf("AT"), "Austria") << locale;
  }
  EXPECT_EQ(CountryNames(std::string(100'000, 'x')).nameOf("AT"), "Austria");
}

TEST(CountryNames, AnUnknownCodeStandsForItself) {
  EXPECT_EQ(CountryNames("de_DE").nameOf("QX"), "QX");
  EXPECT_EQ(CountryNames("en_US").nameOf("AA"), "AA");
}

}  // namespace
}  // namespace lumivane

#include "collection/AsciiNameOrder.h"

#include <gtest/gtest.h>
#include <unicode/ucol.h>

#include <memory>
#include <random>
#include <string>

namespace lumivane {
namespace {

using CollatorRef = std::unique_ptr<UCollator, decltype(&ucol_close)>;

CollatorRef collatorOf(const char* locale) {
  UErrorCode status = U_ZERO_ERROR;
  CollatorRef collator(ucol_open(locale, &status), &ucol_close);
  ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
  return collator;
}

int signOf(int number) {
  return (number > 0) - (number < 0);
}

int icuCompares(const UCollator& collator, const std::string& a, const std::string& b) {
  UErrorCode status = U_ZERO_ERROR;
  return ucol_strcollUTF8(&collator, a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                          static_cast<std::int32_t>(b.size()), &status);
}

std::optional<std::string> keyOf(const AsciiNameOrder& order, const std::string& name) {
  std::vector<std::uint8_t> key;
  if (!order.appendKey(name, key)) return std::nullopt;
  return std::string(key.begin(), key.end());
}

// Few different characters, so that names often begin alike, and many digits.
std::string randomName(std::mt19937& random) {
  static const std::string kCharacters = "aAbBzZ00012399 _-.~(&'\"[";
  std::string name(random() % 9, ' ');
  for (char& c : name)
    c = random() % 8 == 0 ? static_cast<char>(' ' + random() % 95)
                          : kCharacters[random() % kCharacters.size()];
  return name;
}

TEST(AsciiNameOrder, orders_as_icu_does_in_every_language_that_it_takes) {
  std::mt19937 random(11);
  int taken = 0;
  for (std::int32_t i = 0; i < ucol_countAvailable(); ++i) {
    const char* locale = ucol_getAvailable(i);
    const CollatorRef collator = collatorOf(locale);
    const auto order = AsciiNameOrder::of(*collator);
    if (!order) continue;
    ++taken;
    for (int k = 0; k < 300; ++k) {
      const std::string a = randomName(random);
      const std::string b = randomName(random);
      ASSERT_EQ(signOf(keyOf(*order, a).value().compare(keyOf(*order, b).value())),
                icuCompares(*collator, a, b))
          << locale << ": \"" << a << "\" and \"" << b << "\"";
    }
  }
  EXPECT_GT(taken, 50);
}

TEST(AsciiNameOrder, long_names_and_long_numbers) {
  const CollatorRef collator = collatorOf("en_US");
  const auto order = AsciiNameOrder::of(*collator);
  ASSERT_TRUE(order);
  std::mt19937 random(5);
  for (int k = 0; k < 2000; ++k) {
    std::string a;
    for (int part = 0; part < 12; ++part) a += randomName(random);
    a += std::string(random() % 200, static_cast<char>('0' + random() % 3)) + "a";
    std::string b = a;
    b[random() % b.size()] = static_cast<char>(' ' + random() % 95);
    ASSERT_EQ(signOf(keyOf(*order, a).value().compare(keyOf(*order, b).value())),
              icuCompares(*collator, a, b))
        << a << "\n"
        << b;
  }
}

TEST(AsciiNameOrder, leaves_what_is_not_plain_to_others) {
  const CollatorRef collator = collatorOf("en_US");
  const auto order = AsciiNameOrder::of(*collator);
  ASSERT_TRUE(order);
  EXPECT_FALSE(keyOf(*order, "caf\xC3\xA9"));
  EXPECT_FALSE(keyOf(*order, "a\tb"));
  EXPECT_FALSE(keyOf(*order, std::string("a\0b", 3)));
  std::string number(254, '1');
  EXPECT_TRUE(keyOf(*order, number));
  number.insert(0, 300, '0');  // zeros before it do not make it longer
  EXPECT_TRUE(keyOf(*order, number));
  number.push_back('1');
  EXPECT_FALSE(keyOf(*order, number));
}

TEST(AsciiNameOrder, leaves_languages_with_rules_for_plain_letters_to_others) {
  for (const char* locale : {"cs_CZ", "da_DK", "es__TRADITIONAL", "et_EE", "hu_HU"}) {
    EXPECT_FALSE(AsciiNameOrder::of(*collatorOf(locale))) << locale;
  }
  for (const char* locale : {"", "de_DE", "en_US", "fr_FR", "ja_JP", "zh_CN"}) {
    EXPECT_TRUE(AsciiNameOrder::of(*collatorOf(locale))) << locale;
  }
}

TEST(AsciiNameOrder, leaves_other_settings_to_others) {
  UErrorCode status = U_ZERO_ERROR;
  CollatorRef collator = collatorOf("en_US");
  ucol_setAttribute(collator.get(), UCOL_CASE_FIRST, UCOL_UPPER_FIRST, &status);
  EXPECT_FALSE(AsciiNameOrder::of(*collator));
  collator = collatorOf("en_US");
  ucol_setAttribute(collator.get(), UCOL_ALTERNATE_HANDLING, UCOL_SHIFTED, &status);
  EXPECT_FALSE(AsciiNameOrder::of(*collator));
  collator = collatorOf("en_US");
  ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_OFF, &status);
  EXPECT_FALSE(AsciiNameOrder::of(*collator));
}

}  // namespace
}  // namespace lumivane

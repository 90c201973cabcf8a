// The order of whole paths, against ICU's own keys of every name one after the other: whatever is done to be fast, this
// is the order.
#include <gtest/gtest.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "collection/FileNameOrder.h"

namespace lumivane {
namespace {

using Paths = std::vector<std::string>;

std::string icuKey(const UCollator& collator, const std::string& name) {
  std::u16string text(name.size(), u' ');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(text.data(), static_cast<std::int32_t>(text.size()), &length, name.data(),
                       static_cast<std::int32_t>(name.size()), 0xFFFD, nullptr, &status);
  std::string key(name.size() * 20 + 100, '\0');
  const std::int32_t bytes =
      ucol_getSortKey(&collator, text.data(), length, reinterpret_cast<std::uint8_t*>(key.data()),
                      static_cast<std::int32_t>(key.size()));
  return key.substr(0, static_cast<std::size_t>(bytes));
}

Paths sortedByIcu(const Paths& paths, const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UCollator, decltype(&ucol_close)> collator(ucol_open(locale.c_str(), &status),
                                                                   &ucol_close);
  ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
  std::vector<std::pair<std::string, std::string>> keyed;
  for (const std::string& path : paths) {
    std::string key;
    std::string rest = path;
    for (std::size_t slash = rest.find('/'); slash != std::string::npos; slash = rest.find('/')) {
      key += icuKey(*collator, rest.substr(0, slash));
      rest.erase(0, slash + 1);
    }
    keyed.emplace_back(key + icuKey(*collator, rest), path);
  }
  std::sort(keyed.begin(), keyed.end());
  Paths result;
  for (auto& [key, path] : keyed) result.push_back(path);
  return result;
}

// Few different names, so that paths share folders, folders and files have the same name, and numbers are equal.
std::string randomName(std::mt19937& random) {
  static const Paths kNames = {"a",
                               "A",
                               "b.jpg",
                               "img_1",
                               "img_01",
                               "img_10",
                               "IMG_1",
                               "img_001",
                               "Z z",
                               "z.z",
                               "ch",
                               "cz",
                               "aa",
                               "",
                               "7",
                               "caf\xC3\xA9",
                               "cafe\xCC\x81",
                               "cafe",
                               "\xE5\x86\x99\xE7\x9C\x9F",
                               "\xC3\x85rhus",
                               "\x01",
                               "a\x01",
                               "\xFF"};
  return kNames[random() % kNames.size()];
}

Paths randomPaths(std::mt19937& random) {
  Paths paths(60);
  for (std::string& path : paths) {
    if (random() % 4 != 0) path = "/";
    for (auto depth = random() % 4; depth > 0; --depth) path += randomName(random) + "/";
    path += randomName(random);
  }
  return paths;
}

TEST(FileNameOrderLanguages, the_order_is_icus) {
  std::mt19937 random(3);
  for (const char* locale : {"en_US", "de_DE", "da_DK", "cs_CZ", "sv_SE", "ja_JP", ""}) {
    for (int i = 0; i < 60; ++i) {
      const Paths paths = randomPaths(random);
      Paths sorted = paths;
      sortByFileName(sorted, locale);
      ASSERT_EQ(sorted, sortedByIcu(paths, locale)) << locale;
    }
  }
}

}  // namespace
}  // namespace lumivane

// What countries are called in the user's language.
//
// Threads: any; constant once it is made.
// Errors:  none; a country without a name is called by its code, an unknown language is English.
#pragma once

#include <string>
#include <string_view>

namespace lumivane {

class CountryNames {
 public:
  // `locale` as in "de_DE"; what follows a dot or an at sign is of no matter. Empty, "C" and "POSIX" are English.
  explicit CountryNames(std::string_view locale);

  // `code`: two capital letters of ISO 3166-1.
  [[nodiscard]] std::string nameOf(std::string_view code) const;

 private:
  std::string locale_;  // one that ICU has texts for
};

}  // namespace lumivane

#include "platform/linux/UserLocale.h"

namespace lumivane {

std::string userLocale(const Environment& environment, std::string_view category) {
  for (const std::string_view variable : {std::string_view("LC_ALL"), category, std::string_view("LANG")}) {
    const std::string locale = valueOf(environment, variable);
    if (locale.empty()) continue;
    std::string language = locale.substr(0, locale.find_first_of(".@"));
    return language == "C" || language == "POSIX" ? std::string() : language;
  }
  return {};
}

}  // namespace lumivane

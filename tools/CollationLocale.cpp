#include "tools/CollationLocale.h"

namespace lumivane {

std::string collationLocale(const Environment& environment) {
  for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
    const std::string locale = valueOf(environment, variable);
    if (locale.empty()) continue;
    std::string language = locale.substr(0, locale.find_first_of(".@"));
    return language == "C" || language == "POSIX" ? std::string() : language;
  }
  return {};
}

}  // namespace lumivane

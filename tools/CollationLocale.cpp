#include "tools/CollationLocale.h"

#include "platform/linux/UserLocale.h"

namespace lumivane {

std::string collationLocale(const Environment& environment) {
  return userLocale(environment, "LC_COLLATE");
}

}  // namespace lumivane

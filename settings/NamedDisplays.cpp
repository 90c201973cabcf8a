#include "settings/NamedDisplays.h"

#include "settings/DisplayIdentity.h"

namespace lumivane {

std::vector<Display> NamedDisplays::attached() const {
  std::vector<Display> displays = displays_.attached();
  for (Display& display : displays) {
    const bool namedByWindowSystem = display.name != display.connector && display.name != kUnknownDisplayName;
    if (namedByWindowSystem || !registryEntryOf(display.number, registry_)) continue;
    const std::string name = screenNameForDisplay(display.number, registry_, log_);
    if (name != kUnknownDisplayName) display.name = name;
  }
  return displays;
}

}  // namespace lumivane

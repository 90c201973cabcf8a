// Finds a display's product name in the registry of attached display hardware.
//
// Threads: main only.
// Errors:  every failure ends in the name "unknown" and one or two error lines in the log.
#pragma once

#include <optional>
#include <string>

#include "platform/DisplayRegistry.h"
#include "platform/Displays.h"
#include "platform/Log.h"

namespace lumivane {

inline constexpr const char* kUnknownDisplayName = "unknown";

// The first entry whose vendor, product and serial number are all those of the display. An entry without a vendor or
// product never matches; one without a serial number has the serial number 0.
[[nodiscard]] std::optional<DisplayRegistryEntry> registryEntryOf(DisplayNumber display,
                                                                  const DisplayRegistry& registry);

// The entry's name for en_US, else its first; "unknown" when there is none.
[[nodiscard]] std::string screenNameForDisplay(DisplayNumber display, const DisplayRegistry& registry,
                                               Log& log);

}  // namespace lumivane

// Finds a display's product name in the registry of attached display hardware.
//
// Threads: main only.
// Errors:  every failure ends in the name "unknown" and one or two error lines in the log.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Displays.h"
#include "platform/Log.h"

namespace lumivane {

inline constexpr const char* kUnknownDisplayName = "unknown";

// One monitor as it describes itself.
struct DisplayRegistryEntry {
  std::optional<std::int32_t> vendorId;
  std::optional<std::int32_t> productId;
  std::optional<std::int32_t> serialNumber;
  // From locale ("en_US") to name, in the registry's own order. Absent: the monitor tells no name.
  std::optional<std::vector<std::pair<std::string, std::string>>> productNames;
};

// The identity that the window system reports for a display.
struct ReportedIdentity {
  std::uint32_t vendorNumber = 0;
  std::uint32_t modelNumber = 0;
  std::uint32_t serialNumber = 0;  // 0 = none
};

class DisplayRegistry {
 public:
  virtual ~DisplayRegistry() = default;
  // Absent when the registry cannot be read.
  [[nodiscard]] virtual std::optional<std::vector<DisplayRegistryEntry>> entries() const = 0;
  // Absent when the display reports nothing of the kind.
  [[nodiscard]] virtual std::optional<ReportedIdentity> identityOf(DisplayNumber display) const = 0;
};

// The first entry whose vendor, product and serial number are all those of the display. An entry without a vendor or
// product never matches; one without a serial number has the serial number 0.
[[nodiscard]] std::optional<DisplayRegistryEntry> registryEntryOf(DisplayNumber display,
                                                                  const DisplayRegistry& registry);

// The entry's name for en_US, else its first; "unknown" when there is none.
[[nodiscard]] std::string screenNameForDisplay(DisplayNumber display, const DisplayRegistry& registry,
                                               Log& log);

}  // namespace lumivane

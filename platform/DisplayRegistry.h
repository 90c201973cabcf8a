// The attached display hardware as it describes itself, beside what the window system says of it.
//
// Threads: main only.
// Errors:  what cannot be read is absent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Displays.h"

namespace lumivane {

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

}  // namespace lumivane

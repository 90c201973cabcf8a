// A registry of monitors as a test describes them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/DisplayRegistry.h"

namespace lumivane {

class FakeDisplayRegistry final : public DisplayRegistry {
 public:
  std::optional<std::vector<DisplayRegistryEntry>> all = std::vector<DisplayRegistryEntry>{};
  std::optional<ReportedIdentity> identity = ReportedIdentity{10, 20, 0};

  [[nodiscard]] std::optional<std::vector<DisplayRegistryEntry>> entries() const override { return all; }
  [[nodiscard]] std::optional<ReportedIdentity> identityOf(DisplayNumber) const override { return identity; }
};

[[nodiscard]] inline DisplayRegistryEntry entryNamed(const std::string& name,
                                                     std::optional<std::int32_t> serial = std::nullopt) {
  return {10, 20, serial, {{{"en_US", name}}}};
}

}  // namespace lumivane

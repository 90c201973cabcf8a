#include "settings/DisplayIdentity.h"

#include <algorithm>

namespace lumivane {
namespace {

// Both sides are 32 bits without a meaning of their own; only their signs are kept differently.
bool sameBits(std::uint32_t reported, std::int32_t registered) {
  return reported == static_cast<std::uint32_t>(registered);
}

bool matches(const ReportedIdentity& identity, const DisplayRegistryEntry& entry) {
  return entry.vendorId && entry.productId && sameBits(identity.vendorNumber, *entry.vendorId) &&
         sameBits(identity.modelNumber, *entry.productId) &&
         sameBits(identity.serialNumber, entry.serialNumber.value_or(0));
}

}  // namespace

std::optional<DisplayRegistryEntry> registryEntryOf(DisplayNumber display, const DisplayRegistry& registry) {
  const std::optional<std::vector<DisplayRegistryEntry>> entries = registry.entries();
  const std::optional<ReportedIdentity> identity = registry.identityOf(display);
  if (!entries || !identity) return std::nullopt;
  const auto found = std::ranges::find_if(
      *entries, [&](const DisplayRegistryEntry& entry) { return matches(*identity, entry); });
  return found == entries->end() ? std::nullopt : std::optional(*found);
}

std::string screenNameForDisplay(DisplayNumber display, const DisplayRegistry& registry, Log& log) {
  const std::optional<DisplayRegistryEntry> entry = registryEntryOf(display, registry);
  if (!entry) {
    log.error("IOServicePortFromCGDisplayID returned an invalid port (0)");
    return kUnknownDisplayName;
  }
  if (!entry->productNames || entry->productNames->empty()) {
    if (entry->productNames) log.error("Dictionary of display names is empty!");
    log.error("Failed to retrieve display name");
    return kUnknownDisplayName;
  }
  const auto& names = *entry->productNames;
  const auto english = std::ranges::find(names, "en_US", &std::pair<std::string, std::string>::first);
  return english == names.end() ? names.front().second : english->second;
}

}  // namespace lumivane

#include "platform/linux/DrmDisplayRegistry.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace lumivane {
namespace {

constexpr std::size_t kLargestEdidBytes = 32768;  // 256 blocks

// The folders of all connectors, by name; absent when there are no graphics drivers to ask.
std::optional<std::vector<std::string>> connectorFolders(const std::string& drmFolder) {
  std::error_code error;
  std::filesystem::directory_iterator folder(drmFolder, error);
  if (error) return std::nullopt;
  std::vector<std::string> names;
  for (const std::filesystem::directory_iterator end; folder != end; folder.increment(error)) {
    const std::string name = folder->path().filename().string();
    if (name.starts_with("card") && name.find('-') != std::string::npos) names.push_back(name);
    if (error) break;
  }
  std::ranges::sort(names);
  return names;
}

DisplayRegistryEntry entryOf(const Edid& edid) {
  DisplayRegistryEntry entry;
  entry.vendorId = edid.vendor;
  entry.productId = edid.product;
  if (edid.serial != 0) entry.serialNumber = static_cast<std::int32_t>(edid.serial);
  // A monitor has one name, in plain ASCII: that is the English one.
  if (edid.name) entry.productNames.emplace().emplace_back("en_US", *edid.name);
  return entry;
}

}  // namespace

std::vector<std::string> connectorsOf(const std::vector<Display>& displays) {
  std::vector<std::string> connectors;
  connectors.reserve(displays.size());
  for (const Display& display : displays) connectors.push_back(display.connector);
  return connectors;
}

bool isConnector(std::string_view kernelName, std::string_view connector) {
  const std::size_t dash = kernelName.find('-');
  if (dash == std::string_view::npos || connector.empty()) return false;
  const std::string_view name = kernelName.substr(dash + 1);
  if (name == connector) return true;
  constexpr std::string_view kHdmi = "HDMI-A-";
  return name.starts_with(kHdmi) && connector == "HDMI-" + std::string(name.substr(kHdmi.size()));
}

std::optional<Edid> DrmDisplayRegistry::readEdid(const std::string& connectorFolder) const {
  const Result<std::string> bytes =
      files_.read(drmFolder_ + "/" + connectorFolder + "/edid", kLargestEdidBytes);
  return bytes ? parseEdid(bytes.value()) : std::nullopt;
}

std::optional<std::vector<DisplayRegistryEntry>> DrmDisplayRegistry::entries() const {
  const std::optional<std::vector<std::string>> folders = connectorFolders(drmFolder_);
  if (!folders) return std::nullopt;
  std::vector<DisplayRegistryEntry> all;
  for (const std::string& folder : *folders) {
    if (const std::optional<Edid> edid = readEdid(folder)) all.push_back(entryOf(*edid));
  }
  return all;
}

std::optional<ReportedIdentity> DrmDisplayRegistry::identityOf(DisplayNumber display) const {
  if (display == 0 || display > connectors_.size()) return std::nullopt;
  const std::optional<std::vector<std::string>> folders = connectorFolders(drmFolder_);
  if (!folders) return std::nullopt;
  for (const std::string& folder : *folders) {
    if (!isConnector(folder, connectors_[display - 1])) continue;
    if (const std::optional<Edid> edid = readEdid(folder))
      return ReportedIdentity{edid->vendor, edid->product, edid->serial};
  }
  return std::nullopt;
}

}  // namespace lumivane

// The attached monitors as the kernel's graphics drivers know them: /sys/class/drm/<card>-<connector>/edid.
//
// Threads: main only.
// Errors:  as in DisplayRegistry.h; a monitor whose identification cannot be read or makes no sense is left out.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DisplayRegistry.h"
#include "platform/Displays.h"
#include "platform/Edid.h"
#include "platform/Files.h"

namespace lumivane {

inline constexpr const char* kDrmFolder = "/sys/class/drm";

class DrmDisplayRegistry final : public DisplayRegistry {
 public:
  // `connectors` holds the connector ("HDMI-1") of each display in the window system's order: the first one is that
  // of display 1.
  DrmDisplayRegistry(const Files& files, std::vector<std::string> connectors,
                     std::string drmFolder = kDrmFolder)
      : files_(files), connectors_(std::move(connectors)), drmFolder_(std::move(drmFolder)) {}

  [[nodiscard]] std::optional<std::vector<DisplayRegistryEntry>> entries() const override;
  [[nodiscard]] std::optional<ReportedIdentity> identityOf(DisplayNumber display) const override;

 private:
  [[nodiscard]] std::optional<Edid> readEdid(const std::string& connectorFolder) const;

  const Files& files_;
  const std::vector<std::string> connectors_;
  const std::string drmFolder_;
};

// The connectors of the displays, in their order.
[[nodiscard]] std::vector<std::string> connectorsOf(const std::vector<Display>& displays);

// Whether a folder of the kernel ("card0-HDMI-A-1") is the connector that the window system calls so: "HDMI-A-1" on
// Wayland, "HDMI-1" on X.
[[nodiscard]] bool isConnector(std::string_view kernelName, std::string_view connector);

}  // namespace lumivane

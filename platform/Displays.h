// The displays that are attached, in the order in which the window system lists them.
//
// Threads: main only.
// Units:   size in points; pixels = points x scale.
// Errors:  none; no display server means an empty list.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Geometry.h"

namespace lumivane {

using DisplayNumber = std::uint32_t;

struct Display {
  DisplayNumber number = 0;  // 1, 2, ... in the window system's order
  std::string name;          // the monitor's product name, "unknown" when there is none; not yet unique
  SizePt size;
  double scale = 1;
  std::string connector{};  // where it is plugged in: "HDMI-1"; empty = not known
};

class Displays {
 public:
  virtual ~Displays() = default;
  [[nodiscard]] virtual std::vector<Display> attached() const = 0;
};

}  // namespace lumivane

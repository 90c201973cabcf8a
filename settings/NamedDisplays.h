// The attached displays, each by the best name there is: the window system's, else the one that the monitor itself tells.
//
// Threads: main only.
// Owns:    nothing; what it asks must outlive it.
// Errors:  a display that nobody names keeps the name of its connector, or "unknown".
#pragma once

#include <vector>

#include "platform/DisplayRegistry.h"
#include "platform/Displays.h"
#include "platform/Log.h"

namespace lumivane {

class NamedDisplays final : public Displays {
 public:
  NamedDisplays(const Displays& displays, const DisplayRegistry& registry, Log& log)
      : displays_(displays), registry_(registry), log_(log) {}

  [[nodiscard]] std::vector<Display> attached() const override;

 private:
  const Displays& displays_;
  const DisplayRegistry& registry_;
  Log& log_;
};

}  // namespace lumivane

// How much memory the machine could still give: free plus reclaimable.
//
// Threads: any.
// Units:   MiB.
// Errors:  an Error holding the system's error number as text.
#pragma once

#include <cstdint>

#include "platform/Result.h"

namespace lumivane {

class FreeMemory {
 public:
  virtual ~FreeMemory() = default;
  [[nodiscard]] virtual Result<std::int64_t> freeAndReclaimableMB() const = 0;
};

}  // namespace lumivane

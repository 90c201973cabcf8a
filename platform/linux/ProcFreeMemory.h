// Free memory by the kernel's own account: MemAvailable of the machine, or what the control groups that the process
// runs in leave it, whichever is less.
//
// Threads: any.
// Units:   as in FreeMemory.h.
// Errors:  as in FreeMemory.h; control groups that cannot be read count as without limit.
#pragma once

#include <string>

#include "platform/FreeMemory.h"

namespace lumivane {

class ProcFreeMemory final : public FreeMemory {
 public:
  explicit ProcFreeMemory(std::string procFolder = "/proc",
                          std::string controlGroupFolder = "/sys/fs/cgroup");
  [[nodiscard]] Result<std::int64_t> freeAndReclaimableMB() const override;

 private:
  const std::string procFolder_;
  const std::string controlGroupFolder_;
};

}  // namespace lumivane

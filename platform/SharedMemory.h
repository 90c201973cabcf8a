// Memory that one process lends to another: lent to be written there, read here as it stands.
//
// Threads: a value of one owner; its bytes may be read on any thread.
// Owns:    the memory; what another process still maps of it is empty from then on.
// Units:   bytes.
// Errors:  make() fails when there is no memory. Reading never does, whatever the other process does to it.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "platform/Result.h"

namespace lumivane {

class SharedMemory {
 public:
  virtual ~SharedMemory() = default;
  // Its length stays what it is. What stands there may change at any time while another process has it.
  [[nodiscard]] virtual std::span<const std::byte> bytes() const = 0;
};

class SharedMemories {
 public:
  virtual ~SharedMemories() = default;
  [[nodiscard]] virtual Result<std::unique_ptr<SharedMemory>> make(std::size_t bytes) = 0;
};

}  // namespace lumivane

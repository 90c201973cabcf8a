// How often this thread has asked for memory: programs that are linked with AllocationCount.cpp count it in the operators
// new, which they replace with ones on malloc().
//
// Threads: any; each has a count of its own.
// Errors:  none. What C libraries take by malloc() is not counted. Sanitizers watch as ever, for they watch malloc().
#pragma once

#include <cstdint>

namespace lumivane {

// Since the thread began.
[[nodiscard]] std::uint64_t allocationsOfThisThread();

template <typename Action>
[[nodiscard]] std::uint64_t allocationsDuring(Action action) {
  const std::uint64_t before = allocationsOfThisThread();
  action();
  return allocationsOfThisThread() - before;
}

}  // namespace lumivane

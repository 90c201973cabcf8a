#include "tests/support/AllocationCount.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

// The operators have nowhere else to count.
thread_local std::uint64_t allocations = 0;

void* counted(void* memory) {
  ++allocations;
  return memory;
}

void* orThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* allocate(std::size_t bytes) {
  return counted(std::malloc(bytes > 0 ? bytes : 1));
}

void* allocate(std::size_t bytes, std::align_val_t alignment) {
  const auto step = static_cast<std::size_t>(alignment);
  return counted(std::aligned_alloc(step, (bytes / step + 1) * step));
}

}  // namespace

namespace lumivane {

std::uint64_t allocationsOfThisThread() {
  return allocations;
}

}  // namespace lumivane

// All forms of new and delete that the library has, or some would pair with others of another kind.
void* operator new(std::size_t bytes) {
  return orThrow(allocate(bytes));
}
void* operator new[](std::size_t bytes) {
  return orThrow(allocate(bytes));
}
void* operator new(std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(bytes);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  return orThrow(allocate(bytes, alignment));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
  return orThrow(allocate(bytes, alignment));
}
void* operator new(std::size_t bytes, std::align_val_t alignment, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(bytes, alignment);
}
void* operator new[](std::size_t bytes, std::align_val_t alignment, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(bytes, alignment);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*bytes*/, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/, const std::nothrow_t& /*tag*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t /*alignment*/, const std::nothrow_t& /*tag*/) noexcept {
  std::free(memory);
}

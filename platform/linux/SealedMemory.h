// Shared memory without a name, sealed at its size: nobody can cut it off under a reader.
//
// Threads: as in SharedMemory.h.
// Owns:    as in SharedMemory.h.
// Errors:  as in SharedMemory.h.
#pragma once

#include "platform/SharedMemory.h"
#include "platform/linux/FileDescriptor.h"

namespace lumivane {

class SealedMemory final : public SharedMemory {
 public:
  [[nodiscard]] static Result<std::unique_ptr<SharedMemory>> make(std::size_t bytes);
  ~SealedMemory() override;
  SealedMemory(const SealedMemory&) = delete;
  SealedMemory& operator=(const SealedMemory&) = delete;

  [[nodiscard]] std::span<const std::byte> bytes() const override { return bytes_; }
  [[nodiscard]] int descriptor() const { return file_.get(); }

 private:
  SealedMemory(FileDescriptor file, std::span<const std::byte> bytes)
      : file_(std::move(file)), bytes_(bytes) {}

  FileDescriptor file_;
  std::span<const std::byte> bytes_;  // mapped for reading only
};

class SealedMemories final : public SharedMemories {
 public:
  [[nodiscard]] Result<std::unique_ptr<SharedMemory>> make(std::size_t bytes) override {
    return SealedMemory::make(bytes);
  }
};

}  // namespace lumivane

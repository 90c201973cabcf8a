// Owns an open file descriptor and closes it.
//
// Threads: a value, moved from thread to thread.
// Owns:    the descriptor; -1 = none.
// Errors:  none; whoever needs close()'s answer calls closeNow().
#pragma once

#include <unistd.h>

#include <utility>

namespace lumivane {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] int get() const { return descriptor_; }
  // Closes and gives close()'s own answer: 0, or -1 with errno set.
  [[nodiscard]] int closeNow() { return ::close(std::exchange(descriptor_, -1)); }

 private:
  int descriptor_ = -1;
};

}  // namespace lumivane

// A regular file's bytes, mapped into memory read-only.
//
// Threads: any; constant once it is made.
// Owns:    the mapping; the file itself is closed again.
// Errors:  open() fails for what is no regular file (never waiting for a FIFO), is empty, or is larger than the limit;
//          the message names the path. Reading bytes of a file that was cut off after it was mapped, or whose disk is
//          gone, ends the process: only for the program's own installed data, which is replaced but never rewritten.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "platform/Result.h"

namespace lumivane {

class MappedFile {
 public:
  static Result<MappedFile> open(const std::string& path, std::size_t maxBytes);

  MappedFile(MappedFile&& other) noexcept;
  MappedFile& operator=(MappedFile&& other) noexcept;
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile();

  [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

 private:
  explicit MappedFile(std::span<const std::byte> bytes) : bytes_(bytes) {}

  std::span<const std::byte> bytes_;
};

}  // namespace lumivane

// An opened picture file, read by position: never by name again, so that what was checked is what is decoded.
//
// Threads: any; reads do not share a position.
// Owns:    the file descriptor.
// Units:   bytes.
// Errors:  open() gives nothing for what cannot be opened or is no regular file; a read that fails reads nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lumivane {

class PictureFile {
 public:
  // Never blocks on a FIFO or a device, and never makes a terminal the program's own.
  [[nodiscard]] static std::optional<PictureFile> open(const std::string& path);

  PictureFile(PictureFile&& other) noexcept;
  PictureFile& operator=(PictureFile&& other) noexcept;
  PictureFile(const PictureFile&) = delete;
  PictureFile& operator=(const PictureFile&) = delete;
  ~PictureFile();

  // The size when it was opened. The file may have become shorter since.
  [[nodiscard]] std::uint64_t size() const { return size_; }

  // Fills the span from `offset` on; returns how much was there (0 at the end, or on an error).
  [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const;

  // What is there of `count` bytes from `offset` on.
  [[nodiscard]] std::vector<std::byte> read(std::uint64_t offset, std::size_t count) const;

  // A name that leads to this very file, for libraries that open files by themselves.
  [[nodiscard]] std::string reopenablePath() const;

 private:
  PictureFile(int descriptor, std::uint64_t size) : descriptor_(descriptor), size_(size) {}

  int descriptor_ = -1;
  std::uint64_t size_ = 0;
};

}  // namespace lumivane

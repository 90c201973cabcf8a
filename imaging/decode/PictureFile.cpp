#include "imaging/decode/PictureFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace lumivane {

std::optional<PictureFile> PictureFile::open(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (descriptor < 0) return std::nullopt;
  PictureFile file(descriptor, 0);
  struct stat status = {};
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  file.size_ = static_cast<std::uint64_t>(std::max<off_t>(0, status.st_size));
  return file;
}

PictureFile::PictureFile(PictureFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), size_(other.size_) {}

PictureFile& PictureFile::operator=(PictureFile&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  std::swap(size_, other.size_);
  return *this;
}

PictureFile::~PictureFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::size_t PictureFile::readAt(std::uint64_t offset, std::span<std::byte> into) const {
  std::size_t done = 0;
  while (done < into.size() && offset + done < size_) {
    const ssize_t got =
        pread(descriptor_, into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

std::vector<std::byte> PictureFile::read(std::uint64_t offset, std::size_t count) const {
  if (offset >= size_) return {};
  std::vector<std::byte> bytes(static_cast<std::size_t>(std::min<std::uint64_t>(count, size_ - offset)));
  bytes.resize(readAt(offset, bytes));
  return bytes;
}

std::string PictureFile::reopenablePath() const {
  return "/proc/self/fd/" + std::to_string(descriptor_);
}

}  // namespace lumivane

#include "imaging/places/MappedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

Error failure(const std::string& path, const std::string& reason) {
  return Error{printable(path) + ": " + reason};
}
Error failure(const std::string& path, int number) {
  return failure(path, std::generic_category().message(number));
}

Result<std::span<const std::byte>> map(int descriptor, const std::string& path, std::size_t maxBytes) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return failure(path, errno);
  if (!S_ISREG(status.st_mode)) return failure(path, "not a regular file");
  if (status.st_size <= 0) return failure(path, "empty");
  if (static_cast<std::uint64_t>(status.st_size) > maxBytes) return failure(path, "too large");
  const auto size = static_cast<std::size_t>(status.st_size);
  void* const start = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  if (start == MAP_FAILED) return failure(path, errno);
  return std::span(static_cast<const std::byte*>(start), size);
}

}  // namespace

Result<MappedFile> MappedFile::open(const std::string& path, std::size_t maxBytes) {
  // A path with a zero byte in it would be cut off there, and name another file.
  if (path.find('\0') != std::string::npos) return failure(path, EINVAL);
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (descriptor < 0) return failure(path, errno);
  const Result<std::span<const std::byte>> bytes = map(descriptor, path, maxBytes);
  ::close(descriptor);
  if (!bytes) return Error{bytes.error()};
  return MappedFile(bytes.value());
}

MappedFile::MappedFile(MappedFile&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
  std::swap(bytes_, other.bytes_);
  return *this;
}

MappedFile::~MappedFile() {
  if (!bytes_.empty()) ::munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size());
}

}  // namespace lumivane

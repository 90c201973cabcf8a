#include "imaging/decode/ExivFileIo.h"

#include <sys/mman.h>

#include <algorithm>

namespace lumivane {

namespace {

constexpr std::uint64_t kMostBytesRead = std::uint64_t{256} << 20;
constexpr std::uint64_t kEndBytes = std::uint64_t{32} << 20;  // of a large file, at the start and at the end

}  // namespace

ExivFileIo::~ExivFileIo() {
  munmap();
}

int ExivFileIo::open() {
  position_ = 0;
  atEnd_ = false;
  return 0;
}

Exiv2::DataBuf ExivFileIo::read(long count) {
  // The request may be a hostile number; the buffer need not be longer than the file.
  const std::uint64_t left = position_ < file_.size() ? file_.size() - position_ : 0;
  Exiv2::DataBuf buffer(
      static_cast<long>(std::min<std::uint64_t>(left, static_cast<std::uint64_t>(std::max(0L, count)))));
  buffer.size_ = read(buffer.pData_, buffer.size_);
  if (buffer.size_ < count) atEnd_ = true;
  return buffer;
}

long ExivFileIo::read(Exiv2::byte* buffer, long count) {
  if (count <= 0) return 0;
  const auto wanted = static_cast<std::size_t>(count);
  std::size_t got = 0;
  if (bytesRead_ < kMostBytesRead)
    got = file_.readAt(position_, {reinterpret_cast<std::byte*>(buffer), wanted});
  position_ += got;
  bytesRead_ += got;
  if (got < wanted) atEnd_ = true;
  return static_cast<long>(got);
}

int ExivFileIo::getb() {
  Exiv2::byte byte = 0;
  return read(&byte, 1) == 1 ? byte : EOF;
}

int ExivFileIo::seek(long offset, Position from) {
  std::int64_t base = 0;
  if (from == cur) base = static_cast<std::int64_t>(position_);
  if (from == end) base = static_cast<std::int64_t>(file_.size());
  std::int64_t target = 0;
  if (__builtin_add_overflow(base, std::int64_t{offset}, &target) || target < 0) return 1;
  if (static_cast<std::uint64_t>(target) > file_.size()) {
    position_ = file_.size();
    atEnd_ = true;
    return 1;
  }
  position_ = static_cast<std::uint64_t>(target);
  atEnd_ = false;
  return 0;
}

Exiv2::byte* ExivFileIo::mmap(bool) {
  if (copy_ == nullptr && file_.size() > 0) {
    // Memory that is only there once it is written to.
    void* memory =
        ::mmap(nullptr, size(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) throw Exiv2::Error(Exiv2::kerCallFailed, path(), "no memory", "mmap");
    copy_ = memory;
    auto* bytes = static_cast<std::byte*>(memory);
    const std::size_t start = std::min(size(), static_cast<std::size_t>(kEndBytes));
    (void)file_.readAt(0, {bytes, start});
    const std::size_t rest = std::max(start, size() - std::min(size(), static_cast<std::size_t>(kEndBytes)));
    (void)file_.readAt(rest, {bytes + rest, size() - rest});
  }
  return static_cast<Exiv2::byte*>(copy_);
}

int ExivFileIo::munmap() {
  if (copy_ != nullptr) ::munmap(copy_, size());
  copy_ = nullptr;
  return 0;
}

}  // namespace lumivane

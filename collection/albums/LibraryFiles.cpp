#include "collection/albums/LibraryFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <utility>

namespace lumivane {
namespace {

// Where SQLite's readers and writers lock the database file (its file format, "Locking"); the bytes themselves are
// never written.
constexpr off_t kPendingByte = 0x40000000;
constexpr off_t kSharedFirst = kPendingByte + 2;
constexpr off_t kSharedBytes = 510;

std::string reason(int error) {
  return std::generic_category().message(error);
}

// Tries for a lock of the open file, which other files of this process that are open on it do not share.
bool lock(int descriptor, short type, off_t first, off_t bytes) {
  struct flock range {};
  range.l_type = type;
  range.l_whence = SEEK_SET;
  range.l_start = first;
  range.l_len = bytes;
  if (fcntl(descriptor, F_OFD_SETLK, &range) == 0) return true;
  return errno != EAGAIN && errno != EACCES;  // a file system without locks has no writers to wait for
}

// As SQLite's readers do: not while a writer waits for the last reader to end.
bool lockForReading(int descriptor) {
  if (!lock(descriptor, F_RDLCK, kPendingByte, 1)) return false;
  const bool locked = lock(descriptor, F_RDLCK, kSharedFirst, kSharedBytes);
  lock(descriptor, F_UNLCK, kPendingByte, 1);
  return locked;
}

bool sameTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool isUnchanged(const struct stat& before, const struct stat& after) {
  return before.st_size == after.st_size && sameTime(before.st_mtim, after.st_mtim);
}

}  // namespace

ReadOnlyFile::ReadOnlyFile(ReadOnlyFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

ReadOnlyFile& ReadOnlyFile::operator=(ReadOnlyFile&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

ReadOnlyFile::~ReadOnlyFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

Result<ReadOnlyFile> ReadOnlyFile::open(const std::string& path) {
  ReadOnlyFile file;
  file.descriptor_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (!file.isThere() && errno != ENOENT) return Error{reason(errno)};
  struct stat status {};
  if (file.isThere() && (fstat(file.descriptor_, &status) != 0 || !S_ISREG(status.st_mode))) {
    return Error{"it is not a file"};
  }
  return file;
}

std::optional<std::int64_t> ReadOnlyFile::size() const {
  struct stat status {};
  if (!isThere()) return 0;
  if (fstat(descriptor_, &status) != 0) return std::nullopt;
  return status.st_size;
}

std::optional<std::size_t> ReadOnlyFile::read(std::int64_t offset, char* buffer, std::size_t bytes) const {
  std::size_t done = 0;
  while (isThere() && done < bytes) {
    const ssize_t count =
        pread(descriptor_, buffer + done, bytes - done, offset + static_cast<std::int64_t>(done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

Result<LibraryFiles> LibraryFiles::open(const std::string& databasePath) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(databasePath.c_str(), nullptr), &std::free);
  if (!real) return Error{"its database cannot be opened: " + reason(errno)};
  const std::string path = real.get();
  LibraryFiles files;
  // The database first and locked: from then on nobody takes the log away.
  for (const auto& [file, suffix] :
       {std::pair{&files.database_, ""}, std::pair{&files.writeAheadLog_, "-wal"},
        std::pair{&files.journal_, "-journal"}}) {
    Result<ReadOnlyFile> opened = ReadOnlyFile::open(path + suffix);
    if (!opened) return Error{"its database" + std::string(suffix) + " cannot be opened: " + opened.error()};
    *file = std::move(opened).value();
    if (file == &files.database_ && file->isThere() && !lockForReading(file->descriptor())) {
      return Error{"another program has locked it"};
    }
  }
  const std::optional<Stamp> stamp = files.stamp();
  if (!files.database_.isThere() || !stamp) return Error{"its database cannot be opened"};
  if (stamp->database.st_size == 0) return Error{"its database is empty"};
  files.opened_ = *stamp;
  return files;
}

std::optional<LibraryFiles::Stamp> LibraryFiles::stamp() const {
  Stamp stamp;
  const std::optional<std::int64_t> logBytes = writeAheadLog_.size();
  if (fstat(database_.descriptor(), &stamp.database) != 0 || !logBytes) return std::nullopt;
  stamp.logBytes = *logBytes;
  if (!writeAheadLog_.read(0, stamp.logHeader.data(), stamp.logHeader.size())) return std::nullopt;
  return stamp;
}

bool LibraryFiles::changedMeanwhile() const {
  const std::optional<Stamp> now = stamp();
  return !now || !isUnchanged(opened_.database, now->database) || now->logBytes < opened_.logBytes ||
         (opened_.logBytes > 0 && now->logHeader != opened_.logHeader);
}

}  // namespace lumivane

#include "platform/linux/FileReplacement.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>

namespace lumivane {
namespace {

constexpr int kAttempts = 8;
constexpr std::string_view kTemporaryStart = ".lumivane-";
constexpr std::string_view kTemporaryEnd = ".tmp";

// Not the file's own name with something added: that could be too long for the file system.
std::string unpredictableName() {
  std::uint64_t number = 0;
  if (::getrandom(&number, sizeof number, 0) != sizeof number) return {};
  std::array<char, 48> name{};
  std::snprintf(name.data(), name.size(), ".lumivane-%016llx.tmp", static_cast<unsigned long long>(number));
  return name.data();
}

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};

bool isTemporary(std::string_view name) {
  constexpr std::size_t kDigits = 16;
  return name.size() == kTemporaryStart.size() + kDigits + kTemporaryEnd.size() &&
         name.starts_with(kTemporaryStart) && name.ends_with(kTemporaryEnd);
}

// Whoever writes a temporary file holds its lock; who is gone holds none.
void removeIfForsaken(int folder, const char* name) {
  const FileDescriptor file(::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (file.isOpen() && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0) ::unlinkat(folder, name, 0);
}

void removeForsaken(int folder) {
  // Opened anew: the position in a folder is shared by all copies of its descriptor.
  const int again = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, CloseDirectory> entries(again < 0 ? nullptr : ::fdopendir(again));
  if (!entries) {
    if (again >= 0) ::close(again);
    return;
  }
  while (const dirent* const entry = ::readdir(entries.get())) {
    if (isTemporary(entry->d_name)) removeIfForsaken(folder, entry->d_name);
  }
}

// Whether the file is ours: locked, and not taken for a forsaken one before it was. Where a file system knows no locks,
// nobody takes anything for forsaken either.
bool lockedInTime(int file) {
  if (::flock(file, LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
  struct stat status {};
  return ::fstat(file, &status) == 0 && status.st_nlink > 0;
}

}  // namespace

int syncFolder(int folderDescriptor) {
  if (::fsync(folderDescriptor) == 0 || errno == EINVAL || errno == ENOTSUP) return 0;
  return errno;
}

FileReplacement::FileReplacement(const std::string& folder, std::string name)
    : folder_(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      folderError_(folder_.isOpen() ? 0 : errno),
      name_(std::move(name)) {}

FileReplacement::~FileReplacement() {
  if (!temporaryName_.empty()) ::unlinkat(folder_.get(), temporaryName_.c_str(), 0);
}

int FileReplacement::create(mode_t permissions) {
  if (folderError_ != 0) return folderError_;
  removeForsaken(folder_.get());
  for (int attempt = 0; attempt < kAttempts && !file_.isOpen(); ++attempt) {
    const std::string name = unpredictableName();
    if (name.empty()) return EIO;
    file_ = FileDescriptor(
        ::openat(folder_.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (file_.isOpen() && !lockedInTime(file_.get())) {
      file_ = FileDescriptor();
      errno = EEXIST;
    }
    if (file_.isOpen()) temporaryName_ = name;
    if (!file_.isOpen() && errno != EEXIST && errno != EINTR) return errno;
  }
  if (!file_.isOpen()) return EEXIST;
  lock_ = FileDescriptor(::fcntl(file_.get(), F_DUPFD_CLOEXEC, 0));
  // Only now, so that the content is never open to more people than the file before it.
  return permissions == 0600 || ::fchmod(file_.get(), permissions) == 0 ? 0 : errno;
}

int FileReplacement::write(std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(file_.get(), content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

int FileReplacement::commit() {
  if (::fsync(file_.get()) != 0) return errno;
  if (file_.closeNow() != 0) return errno;
  if (::renameat(folder_.get(), temporaryName_.c_str(), folder_.get(), name_.c_str()) != 0) return errno;
  temporaryName_.clear();
  return syncFolder(folder_.get());
}

}  // namespace lumivane

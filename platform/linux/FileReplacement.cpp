#include "platform/linux/FileReplacement.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>

namespace lumivane {
namespace {

constexpr int kAttempts = 8;

// Not the file's own name with something added: that could be too long for the file system.
std::string unpredictableName() {
  std::uint64_t number = 0;
  if (::getrandom(&number, sizeof number, 0) != sizeof number) return {};
  std::array<char, 48> name{};
  std::snprintf(name.data(), name.size(), ".lumivane-%016llx.tmp", static_cast<unsigned long long>(number));
  return name.data();
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
  for (int attempt = 0; attempt < kAttempts && !file_.isOpen(); ++attempt) {
    const std::string name = unpredictableName();
    if (name.empty()) return EIO;
    file_ = FileDescriptor(
        ::openat(folder_.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (file_.isOpen()) temporaryName_ = name;
    if (!file_.isOpen() && errno != EEXIST && errno != EINTR) return errno;
  }
  if (!file_.isOpen()) return EEXIST;
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

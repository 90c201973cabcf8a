#include "collection/FolderIdentity.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string_view>
#include <system_error>

namespace lumivane {
namespace {

Error systemError(int error) {
  return Error{std::generic_category().message(error)};
}

// FAT and its kin number their folders anew at every mount, as do many file systems of the network.
bool keepsInodes(std::uint64_t fileSystemType) {
  constexpr std::array<std::uint64_t, 6> kForgetful = {MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC,
                                                       SMB_SUPER_MAGIC,   CIFS_SUPER_MAGIC,
                                                       SMB2_SUPER_MAGIC,  FUSE_SUPER_MAGIC};
  return std::find(kForgetful.begin(), kForgetful.end(), fileSystemType) == kForgetful.end();
}

std::uint64_t fileSystemNumber(const struct statfs& fileSystem) {
  std::uint64_t number = 0;
  static_assert(sizeof fileSystem.f_fsid == sizeof number);
  std::memcpy(&number, &fileSystem.f_fsid, sizeof number);
  return number;
}

std::int64_t birthOf(const struct statx& status) {
  constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
  // Beyond these seconds (a few centuries) nanoseconds no longer fit: a broken clock, not a birth.
  constexpr std::int64_t kMostSeconds = 9'000'000'000;
  const std::int64_t seconds = status.stx_btime.tv_sec;
  if ((status.stx_mask & STATX_BTIME) == 0 || seconds < 0 || seconds > kMostSeconds) return 0;
  return seconds * kNanosecondsPerSecond + status.stx_btime.tv_nsec;
}

std::string parentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string below(const std::string& folder, std::string_view name) {
  return std::string(folder == "/" ? "" : folder).append(1, '/').append(name);
}

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};
using DirectoryRef = std::unique_ptr<DIR, CloseDirectory>;

}  // namespace

Result<FolderIdentity> identityOfFolder(const std::string& path) {
  struct statx status {};
  if (statx(AT_FDCWD, path.c_str(), AT_STATX_SYNC_AS_STAT, STATX_TYPE | STATX_INO | STATX_BTIME, &status) !=
      0) {
    return systemError(errno);
  }
  if (!S_ISDIR(status.stx_mode)) return systemError(ENOTDIR);
  struct statfs fileSystem {};
  if (statfs(path.c_str(), &fileSystem) != 0) return systemError(errno);
  FolderIdentity identity;
  identity.fileSystem = fileSystemNumber(fileSystem);
  identity.device = makedev(status.stx_dev_major, status.stx_dev_minor);
  identity.inode = keepsInodes(static_cast<std::uint64_t>(fileSystem.f_type)) ? status.stx_ino : 0;
  identity.birthNanoseconds = birthOf(status);
  return identity;
}

bool sameFolder(const FolderIdentity& a, const FolderIdentity& b) {
  if (a.inode == 0 || b.inode == 0) return true;
  if (a.inode != b.inode) return false;
  // The time of birth outlasts restarts and other device numbers; then the file system's number; then the device's.
  if (a.birthNanoseconds != 0 && b.birthNanoseconds != 0) return a.birthNanoseconds == b.birthNanoseconds;
  if (a.fileSystem != 0 && b.fileSystem != 0) return a.fileSystem == b.fileSystem;
  return a.device == b.device;
}

std::optional<std::string> renamedFolder(const std::string& path, const FolderIdentity& identity) {
  if (identity.inode == 0) return std::nullopt;
  const std::string parent = parentOf(path);
  const DirectoryRef directory(opendir(parent.c_str()));
  if (!directory) return std::nullopt;
  while (const dirent* const entry = readdir(directory.get())) {
    const std::string_view name = entry->d_name;
    const bool mayBeFolder = entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN;
    if (!mayBeFolder || name == "." || name == "..") continue;
    std::string sibling = below(parent, name);
    const Result<FolderIdentity> found = identityOfFolder(sibling);
    if (found && found.value().inode != 0 && sameFolder(found.value(), identity)) return sibling;
  }
  return std::nullopt;
}

}  // namespace lumivane

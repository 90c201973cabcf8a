#include "platform/linux/PosixFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <climits>
#include <system_error>

#include "platform/PrintableText.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FileReplacement.h"

namespace lumivane {
namespace {

constexpr int kMaxLinks = 40;  // as many as the kernel itself follows
constexpr mode_t kPermissionBits = 0777;
constexpr mode_t kNewFile = 0600;
constexpr mode_t kNewFolder = 0700;

Error failure(const std::string& path, const std::string& reason) {
  return Error{printable(path) + ": " + reason};
}
Error failure(const std::string& path, int number) {
  return failure(path, std::generic_category().message(number));
}

// A path with a zero byte in it would be cut off there, and name another file.
bool nameable(const std::string& path) {
  return !path.empty() && path.find('\0') == std::string::npos;
}

struct PathParts {
  std::string folder;  // empty = the current folder
  std::string name;
};

PathParts partsOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {"", path};
  return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

std::string joined(const std::string& folder, const std::string& name) {
  if (folder.empty() || name.starts_with('/')) return name;
  return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

// What the path leads to in the end, be it there or not.
Result<std::string> finalTarget(const std::string& path) {
  std::string target = path;
  for (int links = 0; links <= kMaxLinks; ++links) {
    struct stat status {};
    if (::lstat(target.c_str(), &status) != 0) {
      if (errno == ENOENT) return target;
      return failure(path, errno);
    }
    if (!S_ISLNK(status.st_mode)) return target;
    std::array<char, PATH_MAX> next{};
    const ssize_t length = ::readlink(target.c_str(), next.data(), next.size());
    if (length < 0) return failure(path, errno);
    target = joined(partsOf(target).folder, std::string(next.data(), static_cast<std::size_t>(length)));
  }
  return failure(path, ELOOP);
}

// Makes the folder and those above it that are missing. 0 or an error number.
int makeFolders(const std::string& folder) {
  if (folder.empty() || ::mkdir(folder.c_str(), kNewFolder) == 0 || errno == EEXIST) return 0;
  if (errno != ENOENT) return errno;
  const std::string above = partsOf(folder).folder;
  if (above.size() >= folder.size()) return ENOENT;
  if (const int number = makeFolders(above); number != 0) return number;
  return ::mkdir(folder.c_str(), kNewFolder) == 0 || errno == EEXIST ? 0 : errno;
}

// Opens a regular file without ever waiting for it. What is no regular file is not opened at all: merely opening a
// device can have effects. The second look is at what was really opened.
Result<FileDescriptor> openRegular(const std::string& path, int access) {
  if (!nameable(path)) return failure(path, "not a file name");
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return failure(path, errno);
  if (S_ISDIR(status.st_mode)) return failure(path, EISDIR);
  if (!S_ISREG(status.st_mode)) return failure(path, "not a regular file");
  FileDescriptor file(::open(path.c_str(), access | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!file.isOpen()) return failure(path, errno);
  if (::fstat(file.get(), &status) != 0) return failure(path, errno);
  if (!S_ISREG(status.st_mode)) return failure(path, "not a regular file");
  return file;
}

// The permission bits for a file's new content, or why it may not be replaced.
Result<mode_t> permissionsOf(const std::string& target) {
  struct stat status {};
  if (::stat(target.c_str(), &status) != 0) {
    if (errno == ENOENT) return kNewFile;
    return failure(target, errno);
  }
  if (S_ISDIR(status.st_mode)) return failure(target, EISDIR);
  if (!S_ISREG(status.st_mode)) return failure(target, "not a regular file");
  // Renaming would not ask: a file that was made read-only would be replaced all the same.
  if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return failure(target, errno);
  return status.st_mode & kPermissionBits;
}

}  // namespace

bool PosixFiles::exists(const std::string& path) const {
  struct stat status {};
  if (!nameable(path)) return false;
  if (::stat(path.c_str(), &status) == 0) return true;
  return errno != ENOENT && errno != ENOTDIR && errno != ENAMETOOLONG;
}

Result<std::string> PosixFiles::read(const std::string& path, std::size_t maxBytes) const {
  const Result<FileDescriptor> file = openRegular(path, O_RDONLY);
  if (!file) return Error{file.error()};
  const auto tooLarge = [&] { return failure(path, "larger than " + std::to_string(maxBytes) + " bytes"); };
  struct stat status {};
  if (::fstat(file.value().get(), &status) != 0) return failure(path, errno);
  if (static_cast<std::uint64_t>(status.st_size) > maxBytes) return tooLarge();

  // One byte more than the size says, to see the end; files of /proc say 0, and a file may grow meanwhile.
  std::string content(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t length = 0;
  for (;;) {
    if (length == content.size()) content.resize(length + 65536);
    const ssize_t got = ::read(file.value().get(), content.data() + length, content.size() - length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return failure(path, errno);
    if (got == 0) break;
    length += static_cast<std::size_t>(got);
    if (length > maxBytes) return tooLarge();
  }
  content.resize(length);
  return content;
}

Result<Done> PosixFiles::writeAtomically(const std::string& path, std::string_view content) {
  if (!nameable(path)) return failure(path, "not a file name");
  const Result<std::string> target = finalTarget(path);
  if (!target) return Error{target.error()};
  const PathParts parts = partsOf(target.value());
  if (parts.name.empty()) return failure(path, EISDIR);
  if (const int number = makeFolders(parts.folder); number != 0) return failure(parts.folder, number);
  const Result<mode_t> permissions = permissionsOf(target.value());
  if (!permissions) return Error{permissions.error()};

  FileReplacement replacement(parts.folder, parts.name);
  int number = replacement.create(permissions.value());
  if (number == 0) number = replacement.write(content);
  if (number == 0) number = replacement.commit();
  if (number != 0) return failure(path, number);
  return Done{};
}

Result<Done> PosixFiles::rename(const std::string& from, const std::string& to) {
  if (!nameable(from)) return failure(from, "not a file name");
  if (!nameable(to)) return failure(to, "not a file name");
  if (::rename(from.c_str(), to.c_str()) != 0) return failure(from, errno);
  const std::string folder = partsOf(to).folder;
  const FileDescriptor opened(
      ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.isOpen()) return failure(to, errno);
  if (const int number = syncFolder(opened.get()); number != 0) return failure(to, number);
  return Done{};
}

Result<WallTime> PosixFiles::modificationTime(const std::string& path) const {
  if (!nameable(path)) return failure(path, "not a file name");
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return failure(path, errno);
  const auto sinceEpoch = std::chrono::seconds(status.st_mtim.tv_sec) + Nanoseconds(status.st_mtim.tv_nsec);
  return WallTime(std::chrono::duration_cast<WallTime::duration>(sinceEpoch));
}

Result<Done> PosixFiles::remove(const std::string& path) {
  if (!nameable(path)) return failure(path, "not a file name");
  if (::unlink(path.c_str()) != 0) return failure(path, errno);
  return Done{};
}

Result<Done> PosixFiles::probeForUpdating(const std::string& path) const {
  const Result<FileDescriptor> file = openRegular(path, O_RDWR);
  if (!file) return Error{file.error()};
  return Done{};
}

}  // namespace lumivane

#include "collection/FolderTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

namespace lumivane {
namespace {

// O_NONBLOCK and O_DIRECTORY: whatever takes a folder's place between listing and opening cannot block the tour.
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

// Deeper trees close their upper levels on the way down and open them again on the way up.
constexpr std::size_t kMostOpenLevels = 32;

constexpr std::size_t kBufferBytes = 128 * 1024;

// Opens a folder whose path may be longer than the system takes in one call: in strides that it does take.
int openFolder(std::string_view path) {
  int at = AT_FDCWD;
  errno = ENOENT;  // what an empty path is told
  std::string stride;
  while (!path.empty()) {
    std::size_t length = path.size();
    if (length >= PATH_MAX) {
      length = path.rfind('/', PATH_MAX - 2);
      if (length == std::string_view::npos || length == 0)
        length = path.size();  // one name too long: it will fail
    }
    stride.assign(path.substr(0, length));
    const int opened = openat(at, stride.c_str(), kFolderFlags);
    const int error = errno;
    if (at != AT_FDCWD) close(at);
    if (opened < 0) {
      errno = error;
      return -1;
    }
    at = opened;
    path.remove_prefix(std::min(path.size(), length));
    path.remove_prefix(std::min(path.size(), path.find_first_not_of('/')));
  }
  return at;
}

EntryKind kindOfMode(mode_t mode) {
  if (S_ISREG(mode)) return EntryKind::File;
  if (S_ISDIR(mode)) return EntryKind::Folder;
  if (S_ISLNK(mode)) return EntryKind::Link;
  return EntryKind::Other;
}

// Some file systems do not tell the kind with the name.
EntryKind kindOfEntry(int folder, const dirent64& entry) {
  switch (entry.d_type) {
    case DT_REG:
      return EntryKind::File;
    case DT_DIR:
      return EntryKind::Folder;
    case DT_LNK:
      return EntryKind::Link;
    case DT_UNKNOWN:
      break;
    default:
      return EntryKind::Other;
  }
  struct stat status {};
  if (fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) return EntryKind::Other;
  return kindOfMode(status.st_mode);
}

}  // namespace

std::string FolderEntry::path() const {
  const std::string_view ownName = name;
  std::string result;
  result.reserve(folderPath.size() + 1 + ownName.size());
  result.append(folderPath).append(1, '/').append(ownName);
  return result;
}

FolderTree::FolderTree() : buffer_(kBufferBytes) {}

FolderTree::~FolderTree() {
  while (!levels_.empty()) leave();
}

void FolderTree::tour(const std::string& root, FolderVisitor& visitor) {
  path_ = root;
  while (path_.ends_with('/')) path_.pop_back();
  const int descriptor = openFolder(root);
  if (descriptor < 0) {
    visitor.cannotRead(root, errno);
    return;
  }
  enter(descriptor, visitor);
  while (!levels_.empty()) {
    if (visitor.stopWanted() || levels_.back().foldersToVisit.empty()) {
      leave();
    } else {
      enterNextFolder(visitor);
    }
  }
}

void FolderTree::enter(int descriptor, FolderVisitor& visitor) {
  levels_.push_back(Level{descriptor, path_.size(), {}});
  closeDistantLevel();
  read(levels_.back(), visitor);
}

void FolderTree::read(Level& level, FolderVisitor& visitor) {
  while (!visitor.stopWanted()) {
    const ssize_t bytes = getdents64(level.descriptor, buffer_.data(), buffer_.size());
    if (bytes < 0) visitor.cannotRead(path_, errno);
    if (bytes <= 0) return;
    for (ssize_t offset = 0; offset < bytes;) {
      const auto* const entry = reinterpret_cast<const dirent64*>(buffer_.data() + offset);
      offset += entry->d_reclen;
      const std::string_view name = entry->d_name;
      if (name == "." || name == "..") continue;
      if (name.starts_with('.')) {
        visitor.passOver({level.descriptor, path_, entry->d_name, EntryKind::Other});
        continue;
      }
      handle({level.descriptor, path_, entry->d_name, kindOfEntry(level.descriptor, *entry)}, level, visitor);
    }
  }
}

void FolderTree::handle(const FolderEntry& entry, Level& level, FolderVisitor& visitor) {
  const bool enters = visitor.visit(entry);
  if (enters && entry.kind == EntryKind::Folder) level.foldersToVisit.emplace_back(entry.name);
}

void FolderTree::enterNextFolder(FolderVisitor& visitor) {
  Level& level = levels_.back();
  const std::string name = std::move(level.foldersToVisit.back());
  level.foldersToVisit.pop_back();
  if (level.descriptor < 0) level.descriptor = openFolder(path_.empty() ? "/" : path_);
  // Relative to the open folder, and not through links: the tour goes where the listing said, and nowhere else.
  const int descriptor =
      level.descriptor < 0 ? -1 : openat(level.descriptor, name.c_str(), kFolderFlags | O_NOFOLLOW);
  const int error = errno;
  path_.append(1, '/').append(name);
  if (descriptor >= 0) {
    enter(descriptor, visitor);
    return;
  }
  visitor.cannotRead(path_, error);
  path_.resize(level.pathLength);
}

void FolderTree::leave() {
  if (levels_.back().descriptor >= 0) close(levels_.back().descriptor);
  levels_.pop_back();
  if (!levels_.empty()) path_.resize(levels_.back().pathLength);
}

void FolderTree::closeDistantLevel() {
  if (levels_.size() <= kMostOpenLevels) return;
  Level& distant = levels_[levels_.size() - 1 - kMostOpenLevels];
  if (distant.descriptor >= 0) close(distant.descriptor);
  distant.descriptor = -1;
}

}  // namespace lumivane

#include "collection/DirectoryWalk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "collection/ListedPath.h"
#include "collection/PictureTypes.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr std::size_t kRoomForImages = 1000;
constexpr std::size_t kRoomForRoots = 10;

std::string reason(int error) {
  return std::generic_category().message(error);
}

// Where a link leads, through all links on the way.
std::optional<std::string> resolvedPath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
  if (!resolved) return std::nullopt;
  return std::string(resolved.get());
}

std::string linkTarget(const FolderEntry& entry) {
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlinkat(entry.folder, entry.name, target.data(), target.size());
  return length < 0 ? std::string() : std::string(target.data(), static_cast<std::size_t>(length));
}

// Whether a target that is not there was a folder. A link does not record the kind of what it leads to, so its
// text has to tell: a slash at its end can only mean a folder, and a last name without an extension most likely
// does. A lost folder of pictures is worth a line in the log, a lost file is not.
bool namesFolder(std::string_view target) {
  if (target.ends_with('/')) return true;
  const std::string_view lastName = target.substr(target.rfind('/') + 1);
  return lastName.find('.', 1) == std::string_view::npos;
}

// A relative target as a path from the root, for the log.
std::string asPathFrom(const FolderEntry& entry, const std::string& target) {
  if (target.starts_with('/')) return target;
  return std::string(entry.folderPath).append(1, '/').append(target);
}

}  // namespace

DirectoryWalk::DirectoryWalk(WalkRequest request, Log& log)
    : request_(std::move(request)), log_(log), skipPatterns_(request_.skipPatterns, log) {}

DirectoryWalk::~DirectoryWalk() {
  stop_.request_stop();
}

void DirectoryWalk::start() {
  thread_ = std::jthread([this] { scanDirectoryByHand(); });
}

void DirectoryWalk::scanDirectoryByHand() {
  try {
    walkAllRoots();
  } catch (const std::exception& failure) {
    log_.error(std::string("Directory scan broken off: ") + failure.what() + " !");
  }
  isFinished_.store(true, std::memory_order_release);
}

WalkResult DirectoryWalk::takeResult() {
  return std::move(result_);
}

void DirectoryWalk::walkAllRoots() {
  result_.imagefiles.reserve(kRoomForImages);
  result_.rootDirectories.reserve(kRoomForRoots);
  result_.rootDirectories.push_back(request_.mainDirectoryLocation);
  for (std::size_t r = 0; r < result_.rootDirectories.size() && !stopWanted(); ++r) {
    const std::string root = result_.rootDirectories[r];  // a copy: the list grows meanwhile
    walkRoot(root);
  }
  if (stopWanted()) return;
  log_.information("Finished directory scan by hand. Num images = " +
                   std::to_string(result_.imagefiles.size()));
  log_.information("Directories traversed = " + std::to_string(result_.rootDirectories.size()) +
                   " (root and dirs pointed at by aliases)");
  log_.information("Directories total = " + std::to_string(numDirectories_) + " (incl subdirectories)");
}

void DirectoryWalk::walkRoot(const std::string& root) {
  ++numDirectories_;
  if (!fitsInList(root)) {
    log_.error("Folder name cannot be kept in the image list: " + printable(root) + " !");
    return;
  }
  FolderTree().tour(root, *this);
}

bool DirectoryWalk::stopWanted() const {
  return stop_.stop_requested();
}

void DirectoryWalk::cannotRead(const std::string& folderPath, int error) {
  log_.error("enumeratorAtURL: " + printable(folderPath) + "\n error: " + reason(error));
}

void DirectoryWalk::leaveOut(const FolderEntry& entry, LeftOut rule) {
  if (request_.tellLeftOut) request_.tellLeftOut(entry.path(), rule);
}

void DirectoryWalk::passOver(const FolderEntry& entry) {
  leaveOut(entry, LeftOut::Hidden);
}

bool DirectoryWalk::visit(const FolderEntry& entry) {
  switch (entry.kind) {
    case EntryKind::Folder:
      return visitFolder(entry);
    case EntryKind::File:
      visitFile(entry);
      return false;
    case EntryKind::Link:
      visitAlias(entry);
      return false;
    case EntryKind::Other:  // pipes, sockets, devices: never opened
      leaveOut(entry, LeftOut::NoFile);
      return false;
  }
  return false;
}

bool DirectoryWalk::visitFolder(const FolderEntry& entry) {
  ++numDirectories_;
  if (fitsInList(entry.name)) return true;
  log_.error("Folder name cannot be kept in the image list: " + printable(entry.path()) + " !");
  leaveOut(entry, LeftOut::Name);
  return false;
}

void DirectoryWalk::visitFile(const FolderEntry& entry) {
  if (!isPictureFileName(entry.name)) {
    leaveOut(entry, LeftOut::Type);
    return;
  }
  if (!isLargeEnough(entry) || !isFitForList(entry)) return;
  std::string path = entry.path();
  if (skipPatterns_.matchesSkipPattern(path)) {
    leaveOut(entry, LeftOut::SkipPattern);
    return;
  }
  result_.imagefiles.push_back(std::move(path));
  numImages_.store(result_.imagefiles.size(), std::memory_order_relaxed);
}

bool DirectoryWalk::isLargeEnough(const FolderEntry& entry) {
  struct stat status {};
  if (fstatat(entry.folder, entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    const bool gone = errno == ENOENT || errno == ENOTDIR;
    if (!gone) log_.error("No attributes for: " + printable(entry.path()) + " !");
    leaveOut(entry, gone ? LeftOut::NoFile : LeftOut::Unreadable);
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    leaveOut(entry, LeftOut::NoFile);
    return false;
  }
  const std::uint32_t threshold =
      request_.excludekB * 1024U;  // wraps beyond 4 GiB, like the search of an index
  const auto size = static_cast<std::uint64_t>(status.st_size);
  if (size > threshold) return true;
  log_.information("skipping file " + printable(entry.path()) + " with size " + std::to_string(size) +
                   " B < " + std::to_string(static_cast<std::int32_t>(threshold)) + " B");
  leaveOut(entry, LeftOut::FileSize);
  return false;
}

bool DirectoryWalk::isFitForList(const FolderEntry& entry) {
  const std::string_view problem = problemOfListedPath(entry.folderPath, entry.name);
  if (problem.empty()) return true;
  log_.error(std::string(problem) + printable(entry.path()) + " !");
  leaveOut(entry, LeftOut::Name);
  return false;
}

void DirectoryWalk::visitAlias(const FolderEntry& entry) {
  // AT_NO_AUTOMOUNT: following a link must not mount anything.
  struct stat target {};
  const int error = fstatat(entry.folder, entry.name, &target, AT_NO_AUTOMOUNT) == 0 ? 0 : errno;
  if (error == ENOENT || error == ENOTDIR) {
    visitDeadAlias(entry, linkTarget(entry));
    leaveOut(entry, LeftOut::Link);
    return;
  }
  if (error == 0 && !S_ISDIR(target.st_mode)) {  // links to files are never taken
    leaveOut(entry, LeftOut::Link);
    return;
  }
  const std::string alias = entry.path();
  const std::optional<std::string> folder = error == 0 ? resolvedPath(alias) : std::nullopt;
  if (!folder) {
    log_.information("Alias resolution failed: " + printable(alias) + " !");
    leaveOut(entry, LeftOut::Link);
    return;
  }
  ++numDirectories_;
  const std::size_t rootsBefore = result_.rootDirectories.size();
  askForFolder(alias, *folder);
  if (result_.rootDirectories.size() == rootsBefore) leaveOut(entry, LeftOut::Link);
}

void DirectoryWalk::visitDeadAlias(const FolderEntry& entry, const std::string& target) {
  if (!namesFolder(target)) return;
  log_.information("Symlink/Alias is dead: " + printable(entry.path()) + "!");
  log_.information("   pointing to: " + printable(asPathFrom(entry, target)));
}

void DirectoryWalk::askForFolder(const std::string& alias, const std::string& folder) {
  if (result_.rootDirectories.size() >= kMostRoots) {
    if (!toldOfTooManyRoots_) log_.error("Too many folders behind aliases: " + printable(alias) + " !");
    toldOfTooManyRoots_ = true;
    return;
  }
  log_.information("Getting permission for alias: " + printable(alias));
  log_.information("   pointing to: " + printable(folder));
  const PermissionAnswer answer =
      request_.askPermission ? request_.askPermission(folder, stop_.get_token()) : PermissionAnswer{};
  if (stopWanted()) return;
  if (answer.response != kUserConfirmed) {
    log_.information("   user denied (response = " + std::to_string(answer.response) + ")");
    return;
  }
  result_.rootDirectories.push_back(answer.folder);
  log_.information("User gave permission for: " + printable(answer.folder));
}

}  // namespace lumivane

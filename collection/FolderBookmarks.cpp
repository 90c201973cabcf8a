#include "collection/FolderBookmarks.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr std::string_view kFirstLine = "lumivane folder 1\n";
constexpr std::string_view kPathLine = "path ";
constexpr std::size_t kLongestPathBytes = 64 * 1024;

template <typename Number>
std::string numberLine(std::string_view name, Number number) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), number, 16).ptr;
  return std::string(name).append(1, ' ').append(digits.begin(), end).append(1, '\n');
}

// Takes the line of that name off the front of `rest`.
template <typename Number>
bool takeNumberLine(std::string_view& rest, std::string_view name, Number& number) {
  const std::size_t lineEnd = rest.find('\n');
  if (lineEnd == std::string_view::npos || !rest.starts_with(name)) return false;
  std::string_view digits = rest.substr(0, lineEnd);
  digits.remove_prefix(name.size());
  if (!digits.starts_with(' ')) return false;
  digits.remove_prefix(1);
  const auto [end, failure] = std::from_chars(digits.begin(), digits.end(), number, 16);
  rest.remove_prefix(lineEnd + 1);
  return failure == std::errc() && end == digits.end();
}

bool isUsablePath(std::string_view path) {
  return path.starts_with('/') && path.size() <= kLongestPathBytes &&
         path.find('\0') == std::string_view::npos;
}

Result<FolderBookmark> createBookmark(const std::string& directory) {
  if (!isUsablePath(directory)) return Error{"Not a path from the root"};
  const Result<FolderIdentity> identity = identityOfFolder(directory);
  if (!identity) return Error{identity.error()};
  return writeBookmark({directory, identity.value()});
}

struct FoundFolder {
  std::string path;
  bool stale = false;
};

// The recorded place comes first, since that is where the user looks for the folder; another folder that stands
// there now is used, and said to be another. Only when nothing stands there, a new name beside it is tried.
Result<FoundFolder> findFolder(const BookmarkRecord& record) {
  const Result<FolderIdentity> there = identityOfFolder(record.path);
  if (there) return FoundFolder{record.path, !sameFolder(there.value(), record.identity)};
  if (std::optional<std::string> renamed = renamedFolder(record.path, record.identity)) {
    return FoundFolder{std::move(*renamed), true};
  }
  return Error{there.error()};
}

void resolveOne(const FolderBookmark& bookmark, bool isMain, ResolvedBookmarks& resolved, Log& log) {
  const Result<BookmarkRecord> record = parseBookmark(bookmark);
  const Result<FoundFolder> found = record ? findFolder(record.value()) : Error{record.error()};
  if (!found) {
    log.error("Bookmark not resolvable!");
    log.error("Orig path: " + (record ? printable(record.value().path) : "(null)"));
    log.error("Error: " + found.error());
    resolved.moved = true;
    return;
  }
  const auto& [path, stale] = found.value();
  if (stale) log.information("Bookmark got stale: " + printable(path));
  resolved.moved = resolved.moved || stale;
  resolved.opened.push_back(path);
  if (isMain) resolved.mainDirectoryLocation = path;
}

}  // namespace

std::vector<FolderBookmark> emptyBookmarks() {
  return {FolderBookmark()};
}

FolderBookmark writeBookmark(const BookmarkRecord& record) {
  FolderBookmark bookmark(kFirstLine);
  bookmark += numberLine("filesystem", record.identity.fileSystem);
  bookmark += numberLine("device", record.identity.device);
  bookmark += numberLine("inode", record.identity.inode);
  bookmark += numberLine("birth", record.identity.birthNanoseconds);
  return bookmark.append(kPathLine).append(record.path);
}

Result<BookmarkRecord> parseBookmark(std::string_view bookmark) {
  BookmarkRecord record;
  FolderIdentity& identity = record.identity;
  if (!bookmark.starts_with(kFirstLine)) return Error{"Not a bookmark of a folder"};
  bookmark.remove_prefix(kFirstLine.size());
  const bool complete = takeNumberLine(bookmark, "filesystem", identity.fileSystem) &&
                        takeNumberLine(bookmark, "device", identity.device) &&
                        takeNumberLine(bookmark, "inode", identity.inode) &&
                        takeNumberLine(bookmark, "birth", identity.birthNanoseconds);
  if (!complete || !bookmark.starts_with(kPathLine)) return Error{"The bookmark is damaged"};
  bookmark.remove_prefix(kPathLine.size());
  if (!isUsablePath(bookmark)) return Error{"The bookmark holds no usable path"};
  record.path = bookmark;
  return record;
}

std::optional<std::vector<FolderBookmark>> createBookmarks(
    const std::optional<std::vector<std::string>>& directories, Log& log) {
  if (!directories) {
    log.error("createBookmarks: directories is nil!");
    return std::nullopt;
  }
  log.information("createBookmarks: " + std::to_string(directories->size()) + " directories");
  std::vector<FolderBookmark> bookmarks;
  for (const std::string& directory : *directories) {
    Result<FolderBookmark> bookmark = createBookmark(directory);
    if (bookmark) {
      bookmarks.push_back(std::move(bookmark).value());
      log.information("Bookmark for: " + printable(directory));
    } else {
      log.error("Bookmark creation failed: " + bookmark.error() + "!\n for directory " +
                printable(directory));
    }
  }
  return bookmarks;
}

ResolvedBookmarks resolveBookmarks(const std::optional<std::vector<FolderBookmark>>& bookmarks, Log& log) {
  ResolvedBookmarks resolved;
  if (!bookmarks || bookmarks->empty() || *bookmarks == emptyBookmarks()) return resolved;
  for (std::size_t i = 0; i < bookmarks->size(); ++i) resolveOne((*bookmarks)[i], i == 0, resolved, log);
  return resolved;
}

ResolvedBookmarks recordedFolders(const std::optional<std::vector<FolderBookmark>>& bookmarks) {
  ResolvedBookmarks recorded;
  if (!bookmarks || *bookmarks == emptyBookmarks()) return recorded;
  for (std::size_t i = 0; i < bookmarks->size(); ++i) {
    const Result<BookmarkRecord> record = parseBookmark((*bookmarks)[i]);
    if (!record) continue;
    recorded.opened.push_back(record.value().path);
    if (i == 0) recorded.mainDirectoryLocation = record.value().path;
  }
  return recorded;
}

}  // namespace lumivane

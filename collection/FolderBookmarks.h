// Remembers the folders that pictures were collected from, so that one that was moved or lost is noticed.
//
// Threads: main only (tools: any one).
// Format:  a bookmark is a few lines of text: its version, the folder's identity in hexadecimal numbers, its path.
// Errors:  logged, one folder at a time; the other folders are still used. Bytes that are no bookmark are an error
//          like any other.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "collection/FolderIdentity.h"
#include "platform/Log.h"
#include "platform/Result.h"

namespace lumivane {

// What the settings keep for one folder: bytes that only this unit reads.
using FolderBookmark = std::string;

inline constexpr std::string_view kFoldersMovedMessage =
    "Rescan the pictures folder (some sub-folders seem to have moved)!";

// The list that says that no folder was ever chosen: one empty bookmark.
[[nodiscard]] std::vector<FolderBookmark> emptyBookmarks();

// A bookmark for each folder, in their order; a folder that none can be made for is left out. No list of folders
// gives no list of bookmarks.
[[nodiscard]] std::optional<std::vector<FolderBookmark>> createBookmarks(
    const std::optional<std::vector<std::string>>& directories, Log& log);

struct ResolvedBookmarks {
  std::optional<std::string> mainDirectoryLocation;  // the folder of the first bookmark, if it was found
  std::vector<std::string> opened;                   // all folders found, in order
  bool moved = false;  // one was moved or lost: kFoldersMovedMessage is to be shown, once
  bool operator==(const ResolvedBookmarks&) const = default;
};

[[nodiscard]] ResolvedBookmarks resolveBookmarks(const std::optional<std::vector<FolderBookmark>>& bookmarks,
                                                 Log& log);

// The folders as they were recorded, without asking the disk whether they are still there.
[[nodiscard]] ResolvedBookmarks recordedFolders(const std::optional<std::vector<FolderBookmark>>& bookmarks);

// A bookmark's content.
struct BookmarkRecord {
  std::string path;
  FolderIdentity identity;
  bool operator==(const BookmarkRecord&) const = default;
};
[[nodiscard]] FolderBookmark writeBookmark(const BookmarkRecord& record);
[[nodiscard]] Result<BookmarkRecord> parseBookmark(std::string_view bookmark);

}  // namespace lumivane

// What the tables and columns of a library's database are called: some of the names carry numbers that change with
// every release of its application.
//
// Threads: any; pure functions over an open database.
// Errors:  a database that is no photo library, or one of a release later than those known, is an Error.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "collection/albums/LibraryDatabase.h"
#include "platform/Result.h"

namespace lumivane {

// The releases from macOS 10.15 (13) to 26 (19) that are known: a thousand versions of the model for each.
inline constexpr std::int64_t kNewestModelVersion = 19999;

struct LibrarySchema {
  std::string assetTable;
  std::set<std::string, std::less<>> assetColumns;
  // Which asset is in which album.
  std::string memberTable;
  std::string memberAlbum;
  std::string memberAsset;
  std::string memberOrder;
  // What can be told of a picture beyond its file; a library may do without.
  bool hasAttributes = false;
  bool hasDescriptions = false;
  bool hasMoments = false;
  std::string keywordColumn;  // empty = no keywords

  // The asset's column, or NULL for one that this library does not have; assets are called "s" in questions.
  [[nodiscard]] std::string asset(std::string_view column) const;
};

[[nodiscard]] Result<LibrarySchema> readLibrarySchema(LibraryDatabase& database);

}  // namespace lumivane

#include "collection/albums/AlbumRows.h"

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>
#include <unordered_map>

#include "collection/albums/PictureRows.h"

namespace lumivane {
namespace {

constexpr std::int64_t kUserAlbum = 2;
constexpr std::int64_t kRootFolder = 3999;
constexpr std::size_t kMostAlbums = 100'000;
constexpr std::size_t kLongestName = 1'000;

// An album with what decides whether and where it is listed.
struct FoundAlbum {
  AlbumRow row;
  std::int64_t parent = 0;
  std::int64_t position = 0;
};

// A name is kept in the settings, whose format has no way to write control characters.
std::string nameIn(const LibraryRow& row, int column) {
  std::string name = row.text(column, kLongestName);
  std::ranges::replace_if(
      name, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
  return name;
}

AlbumRow albumRow(const LibraryRow& row) {
  AlbumRow album;
  album.key = row.integer(0).value_or(0);
  album.album.identifier = row.text(1, kLongestName);
  if (album.album.identifier.empty()) album.album.identifier = "#" + std::to_string(album.key);
  album.album.name = nameIn(row, 2);
  album.sortKey = row.integer(3).value_or(0);
  album.ascending = row.integer(4).value_or(1) != 0;
  return album;
}

std::vector<AlbumRow> inOrder(std::vector<FoundAlbum> found, const std::set<std::int64_t>& roots) {
  std::erase_if(found, [&](const FoundAlbum& album) { return !roots.contains(album.parent); });
  std::ranges::sort(found, {}, [](const FoundAlbum& album) {
    return std::tuple(album.parent, album.position, album.row.key);
  });
  std::vector<AlbumRow> rows;
  for (FoundAlbum& album : found) rows.push_back(std::move(album.row));
  return rows;
}

}  // namespace

Result<std::vector<AlbumRow>> readAlbumRows(LibraryDatabase& database) {
  Result<LibraryQuery> query = database.query(
      "SELECT Z_PK, ZUUID, ZTITLE, ZCUSTOMSORTKEY, ZCUSTOMSORTASCENDING, ZKIND, ZTRASHEDSTATE, ZPARENTFOLDER,"
      " Z_FOK_PARENTFOLDER FROM ZGENERICALBUM WHERE ZKIND = 2 OR ZKIND = 3999");
  if (!query) return Error{query.error()};
  std::vector<FoundAlbum> found;
  std::set<std::int64_t> roots;
  const Result<Done> read = query.value().run({}, [&](const LibraryRow& row) {
    const std::int64_t kind = row.integer(5).value_or(0);
    if (kind == kRootFolder) roots.insert(row.integer(0).value_or(0));
    if (kind != kUserAlbum || row.integer(6).value_or(0) != 0 || !row.integer(7))
      return roots.size() <= kMostAlbums;
    constexpr std::int64_t kFirst = std::numeric_limits<std::int64_t>::min();
    found.push_back({albumRow(row), *row.integer(7), row.integer(8).value_or(kFirst)});
    return found.size() <= kMostAlbums;
  });
  if (!read) return Error{read.error()};
  if (found.size() > kMostAlbums || roots.size() > kMostAlbums) return Error{"it has too many albums"};
  return inOrder(std::move(found), roots);
}

Result<Done> countPictures(LibraryDatabase& database, const LibrarySchema& schema,
                           std::vector<AlbumRow>& albums) {
  std::unordered_map<std::int64_t, std::size_t*> counts;
  for (AlbumRow& album : albums) counts.emplace(album.key, &album.album.numPictures);
  Result<LibraryQuery> query =
      database.query(membersQuestion(schema, "j." + quotedName(schema.memberAlbum), ""));
  if (!query) return Error{query.error()};
  return query.value().run({}, [&](const LibraryRow& row) {
    const auto album = counts.find(row.integer(0).value_or(0));
    const MemberState state = memberState(row, 1);
    if (album != counts.end() && state.isShown && !state.hidden && state.mediaType == MediaType::Picture) {
      ++*album->second;
    }
    return true;
  });
}

}  // namespace lumivane

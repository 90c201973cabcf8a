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

// The columns of an album.
enum Column { Key, Identifier, Title, SortKey, Ascending, Kind, Trashed, Parent, Position };

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

FoundAlbum foundAlbum(const LibraryRow& row) {
  FoundAlbum found;
  found.parent = row.integer(Parent).value_or(0);
  found.position = row.integer(Position).value_or(std::numeric_limits<std::int64_t>::min());
  found.row.key = row.integer(Key).value_or(0);
  found.row.sortKey = row.integer(SortKey).value_or(0);
  found.row.ascending = row.integer(Ascending).value_or(1) != 0;
  Album& album = found.row.album;
  album.name = nameIn(row, Title);
  album.identifier = row.text(Identifier, kLongestName);
  if (album.identifier.empty()) album.identifier = "#" + std::to_string(found.row.key);
  return found;
}

std::vector<AlbumRow> inOrder(std::vector<FoundAlbum> found, const std::set<std::int64_t>& roots) {
  std::erase_if(found, [&](const FoundAlbum& album) { return !roots.contains(album.parent); });
  std::ranges::sort(found, {}, [](const FoundAlbum& album) {
    return std::tuple(album.parent, album.position, album.row.key);
  });
  std::vector<AlbumRow> rows;
  rows.reserve(found.size());
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
  const auto areTooMany = [&] { return found.size() > kMostAlbums || roots.size() > kMostAlbums; };
  const Result<Done> read = query.value().run({}, [&](const LibraryRow& row) {
    const bool isTrashed = row.integer(Trashed).value_or(0) != 0;
    if (row.integer(Kind) == kRootFolder) roots.insert(row.integer(Key).value_or(0));
    if (row.integer(Kind) == kUserAlbum && !isTrashed && row.integer(Parent))
      found.push_back(foundAlbum(row));
    return !areTooMany();
  });
  if (!read) return Error{read.error()};
  if (areTooMany()) return Error{"it has too many albums"};
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

#include "collection/albums/SqlitePhotoLibrary.h"

#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "collection/albums/AlbumRows.h"
#include "collection/albums/LibraryDatabase.h"
#include "collection/albums/LibraryFiles.h"
#include "collection/albums/LibrarySchema.h"
#include "collection/albums/PhotoLibraryPackage.h"
#include "collection/albums/PictureOrder.h"
#include "collection/albums/PictureRows.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr int kMostAttempts = 5;

Error unreadable(const std::string& package, const std::string& reason) {
  return Error{"Photo library " + printable(package) + " cannot be read: " + reason + " !"};
}

// Reads with `read(database, schema)` until nothing that was written meanwhile can have got into the answer.
template <typename Read>
auto readConsistently(const std::string& package, const std::stop_token& stop, const Read& read)
    -> decltype(read(std::declval<LibraryDatabase&>(), std::declval<const LibrarySchema&>())) {
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    Result<LibraryFiles> files = LibraryFiles::open(package + "/database/Photos.sqlite");
    if (!files) return unreadable(package, files.error());
    auto database = LibraryDatabase::open(std::move(files).value(), {.stop = stop});
    if (!database) return unreadable(package, database.error());
    const Result<LibrarySchema> schema = readLibrarySchema(*database.value());
    auto answer = schema ? read(*database.value(), schema.value()) : Error{schema.error()};
    if (database.value()->changedMeanwhile()) continue;
    if (!answer) return unreadable(package, answer.error());
    return answer;
  }
  return unreadable(package, "it is being changed all the time");
}

bool isFile(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

Result<AlbumList> SqlitePhotoLibrary::albums(std::stop_token stop) const {
  const std::optional<std::string> package = findPhotoLibrary(named_, picturesFolder_);
  if (!package) return AlbumList{false, {}};
  return readConsistently(
      *package, stop, [](LibraryDatabase& database, const LibrarySchema& schema) -> Result<AlbumList> {
        Result<std::vector<AlbumRow>> rows = readAlbumRows(database);
        if (!rows) return Error{rows.error()};
        if (const Result<Done> counted = countPictures(database, schema, rows.value()); !counted) {
          return Error{counted.error()};
        }
        AlbumList list;
        for (AlbumRow& row : rows.value()) list.albums.push_back(std::move(row.album));
        return list;
      });
}

Result<std::vector<AlbumPicture>> SqlitePhotoLibrary::pictures(const Album& album, AlbumDetail detail,
                                                               std::stop_token stop) const {
  const std::optional<std::string> package = findPhotoLibrary(named_, picturesFolder_);
  if (!package) return Error{"There is no photo library any more !"};
  using Rows = Result<std::vector<PictureRow>>;
  Rows rows =
      readConsistently(*package, stop, [&](LibraryDatabase& database, const LibrarySchema& schema) -> Rows {
        Result<std::vector<AlbumRow>> albums = readAlbumRows(database);
        if (!albums) return Error{albums.error()};
        const auto row = std::ranges::find_if(albums.value(), [&](const AlbumRow& candidate) {
          return candidate.album.identifier == album.identifier;
        });
        if (row == albums.value().end()) return Error{"album " + printable(album.name) + " is gone"};
        const PictureDetails details{.titles = row->sortKey == kSortedByTitle,
                                     .descriptions = detail == AlbumDetail::Descriptions};
        Rows found = readPictureRows(database, schema, row->key, foldersOf(*package), details);
        if (found) sortPictures(found.value(), row->sortKey, row->ascending, locale_);
        return found;
      });
  if (!rows) return Error{rows.error()};
  std::vector<AlbumPicture> pictures;
  for (PictureRow& row : rows.value()) {
    if (stop.stop_requested()) return unreadable(*package, "reading it was broken off");
    row.picture.isPresent = isFile(row.picture.path);
    pictures.push_back(std::move(row.picture));
  }
  return pictures;
}

}  // namespace lumivane

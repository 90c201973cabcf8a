// Reads the albums of a library.
//
// Threads: any; pure functions over an open database.
// Errors:  what the database cannot answer, and albums without end.
#pragma once

#include <cstdint>
#include <vector>

#include "collection/albums/LibraryDatabase.h"
#include "collection/albums/LibrarySchema.h"
#include "collection/albums/PhotoLibrary.h"

namespace lumivane {

// An album and what reading its pictures takes.
struct AlbumRow {
  std::int64_t key = 0;  // the database's own
  Album album;
  std::int64_t sortKey = 0;  // see PictureOrder.h
  bool ascending = true;
};

// The user's albums of the top level, in the user's order, without their numbers of pictures. What is in the trash
// or inside a folder is left out.
[[nodiscard]] Result<std::vector<AlbumRow>> readAlbumRows(LibraryDatabase& database);

// Fills in the numbers of pictures.
[[nodiscard]] Result<Done> countPictures(LibraryDatabase& database, const LibrarySchema& schema,
                                         std::vector<AlbumRow>& albums);

}  // namespace lumivane

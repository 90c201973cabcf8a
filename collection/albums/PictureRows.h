// Reads the members of an album.
//
// Threads: any; pure functions over an open database.
// Errors:  what the database cannot answer; more members or more text than memory should be spent on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "collection/albums/LibraryDatabase.h"
#include "collection/albums/LibrarySchema.h"
#include "collection/albums/PhotoLibrary.h"
#include "collection/albums/PicturePath.h"

namespace lumivane {

// A member with what its place among the others depends on.
struct PictureRow {
  AlbumPicture picture;
  std::int64_t key = 0;       // the database's own
  std::int64_t position = 0;  // in the order that the user made
  double created = 0;         // seconds since 2001; without a date: before all others
  std::string title;
};

// What is read beyond the files and their dates.
struct PictureDetails {
  bool titles = true;
  bool descriptions = true;
};

// Everything but whether the files are there. What is in the trash, and the frames of a burst that nobody picked, are
// left out.
[[nodiscard]] Result<std::vector<PictureRow>> readPictureRows(LibraryDatabase& database,
                                                              const LibrarySchema& schema,
                                                              std::int64_t albumKey,
                                                              const PackageFolders& folders,
                                                              const PictureDetails& wanted);

// Asks for the members of albums ("j") with their assets ("s"): the columns given, then those of memberState().
[[nodiscard]] std::string membersQuestion(const LibrarySchema& schema, std::string_view columns,
                                          std::string_view condition);

struct MemberState {
  MediaType mediaType = MediaType::Other;
  bool hidden = false;
  bool isShown = false;  // not in the trash, and no frame that nobody picked
};
[[nodiscard]] MemberState memberState(const LibraryRow& row, int firstColumn);

}  // namespace lumivane

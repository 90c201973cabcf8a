// From a photo library's answers to what the slideshow takes from them, and what it says about it in the log.
//
// Threads: main only (tools: any one).
// Errors:  logged; what a failure leaves of the collection is in the result.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "collection/albums/PhotoLibrary.h"
#include "platform/Log.h"

namespace lumivane {

// Takes over the albums when the library has told them: none when there is no library or it cannot be read.
[[nodiscard]] std::vector<Album> albumsLoaded(Result<AlbumList> answer, Log& log);

// The first album of that name; nullptr, with an error in the log, when there is none.
[[nodiscard]] const Album* findAlbum(const std::vector<Album>& albums, std::string_view name, Log& log);

enum class AlbumEnd {
  Collected,       // the pictures replace the collection, and it is saved
  Empty,           // there are none; the empty collection is saved
  OutsideLibrary,  // they lie outside any library's package: the collection is empty and not saved
  Unreadable       // the library could not be read: the collection stays what it was
};

struct CollectedAlbum {
  AlbumEnd end = AlbumEnd::Unreadable;
  std::vector<std::string> imagefiles;  // in the album's order; empty unless Collected
  std::string mainDirectoryLocation;    // the package with a slash at its end; empty unless Collected
  std::size_t numMissing = 0;           // pictures left out because their files are not here
};

// What is collected from the members of an album: pictures whose files are there and that are not hidden.
[[nodiscard]] CollectedAlbum collectAlbum(const std::string& albumName,
                                          const Result<std::vector<AlbumPicture>>& members, Log& log);

// Comment, keywords and places of a picture in one line; absent when there is nothing to say.
[[nodiscard]] std::optional<std::string> pictureDescription(const AlbumPicture& picture);

// For diagnosis: logs how many pictures there are, and the paths of the first 900.
void listImages(const std::vector<std::string>& imagefiles, Log& log);

}  // namespace lumivane

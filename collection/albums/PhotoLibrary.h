// The user's photo library: its albums, and the pictures of one album.
//
// Threads: any; reading can take long and belongs on a background queue.
// Owns:    nothing; each call reads the library as it is then.
// Errors:  a library that is there but cannot be read is an Error, whose message is one whole line for the log.
#pragma once

#include <cstddef>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/Result.h"

namespace lumivane {

// What a member of an album is; the numbers are those of the platform that photo libraries come from.
enum class MediaType { Other = 0, Picture = 2, Movie = 4 };

// An album that the user made. Several may have the same name.
struct Album {
  std::string name{};
  std::string identifier{};     // the library's own; stays when the album is renamed
  std::size_t numPictures = 0;  // members that are pictures, neither hidden nor in the trash
  bool operator==(const Album&) const = default;
};

struct AlbumList {
  bool foundLibrary = true;   // false: there is no library on this machine
  std::vector<Album> albums;  // those of the top level, in the user's order
};

// A member of an album. What is in the trash is no member.
struct AlbumPicture {
  std::string path{};     // absolute; empty when the library names no file that could be opened
  bool isPresent = true;  // false: there is no such file here; it may be kept in a cloud
  MediaType mediaType = MediaType::Picture;
  bool hidden = false;
  std::string comment{};
  std::vector<std::string> keywords{};  // in alphabetical order
  std::vector<std::string> places{};    // from the smallest to the largest
  bool operator==(const AlbumPicture&) const = default;
};

// What is read of an album's members. Descriptions are comment, keywords and places; without them a large album is
// read ten times as fast.
enum class AlbumDetail { Files, Descriptions };

class PhotoLibrary {
 public:
  virtual ~PhotoLibrary() = default;

  // A stop that is requested meanwhile ends the reading with an Error.
  [[nodiscard]] virtual Result<AlbumList> albums(std::stop_token stop) const = 0;
  // In the order in which the library's own application shows them.
  [[nodiscard]] virtual Result<std::vector<AlbumPicture>> pictures(const Album& album, AlbumDetail detail,
                                                                   std::stop_token stop) const = 0;
};

}  // namespace lumivane

// Reads photo-library packages of macOS 10.15 to 26: the SQLite database of a package, which may be in use by its own
// application, on a read-only disk, or behind a link.
//
// Threads: any, several at once.
// Owns:    nothing between two calls. Not one byte of a package changes.
// Errors:  as PhotoLibrary says; a library that its owner changes all the time is one as well.
#pragma once

#include <functional>
#include <string>

#include "collection/albums/PhotoLibrary.h"

namespace lumivane {

class SqlitePhotoLibrary final : public PhotoLibrary {
 public:
  // Reads the library that is named; without a name the first one of the pictures folder. Titles are sorted as the
  // locale has it (FileNameOrder.h).
  SqlitePhotoLibrary(std::string named, std::string picturesFolder, std::string locale)
      : named_(std::move(named)), picturesFolder_(std::move(picturesFolder)), locale_(std::move(locale)) {}

  [[nodiscard]] Result<AlbumList> albums(std::stop_token stop) const override;
  [[nodiscard]] Result<std::vector<AlbumPicture>> pictures(const Album& album, AlbumDetail detail,
                                                           std::stop_token stop) const override;

 private:
  const std::string named_;
  const std::string picturesFolder_;
  const std::string locale_;
};

}  // namespace lumivane

#include "tools/PhotoLibraryArgument.h"

#include "collection/albums/AlbumCollection.h"
#include "platform/PrintableText.h"
#include "tools/CollationLocale.h"

namespace lumivane {

SqlitePhotoLibrary photoLibraryFor(const Tool& tool, const std::vector<std::string>& operands) {
  const std::string named =
      operands.empty() ? valueOf(tool.environment, "LUMIVANE_PHOTOS_LIBRARY") : operands.front();
  return {named, tool.folders.pictures, collationLocale(tool.environment)};
}

std::optional<std::vector<Album>> albumsFor(const Tool& tool, const PhotoLibrary& library) {
  Result<AlbumList> list = library.albums({});
  if (list && !list.value().foundLibrary) {
    fail(tool, "there is no photo library in \"" + printable(tool.folders.pictures) + "\"; name one");
    return std::nullopt;
  }
  const bool wasRead = list.ok();
  std::vector<Album> albums = albumsLoaded(std::move(list), tool.log);
  if (!wasRead) return std::nullopt;
  return albums;
}

}  // namespace lumivane

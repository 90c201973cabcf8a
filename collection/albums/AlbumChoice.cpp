#include "collection/albums/AlbumChoice.h"

#include <algorithm>
#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {

AlbumControls albumListControls(bool on) {
  return {.directoryTreeIsOn = !on, .albumIsOn = on, .folderSettingsEnabled = !on};
}

AlbumAction setUseAlbum(AlbumChoice choice, const std::vector<Album>& albums, Log& log) {
  if (albums.empty()) log.error("No albums were found at startup time!");
  choice.selectedAlbum.clear();
  choice.useAlbum = !albums.empty();
  const AlbumControls controls = albumListControls(choice.useAlbum);
  return {std::move(choice), controls, false};
}

AlbumAction setUseDirectoryTree(AlbumChoice choice) {
  const bool wasAlbum = std::exchange(choice.useAlbum, false);
  return {std::move(choice), albumListControls(false), wasAlbum};
}

AlbumAction selectAlbum(AlbumChoice choice, const std::vector<Album>& albums, long row) {
  if (row < 0 || std::cmp_greater(row, albums.size())) {
    return {AlbumChoice{}, std::nullopt, false};
  }
  const auto index = static_cast<std::size_t>(row);
  if (index == albums.size() || albums[index].name == choice.selectedAlbum) {
    return {std::move(choice), std::nullopt, false};
  }
  return {AlbumChoice{true, albums[index].name}, albumListControls(true), true};
}

std::size_t numberOfRowsInAlbumTable(const std::vector<Album>& albums) {
  return std::max<std::size_t>(albums.size(), 1);
}

std::string textOfAlbumRow(const std::vector<Album>& albums, std::size_t row) {
  return row < albums.size() ? printable(albums[row].name) : std::string(" ");
}

}  // namespace lumivane

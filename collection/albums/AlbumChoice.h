// What the preferences do when the user chooses between a folder tree and an album: the rules behind two radio
// buttons and a table of albums.
//
// Threads: main only.
// Errors:  none; a choice that cannot be made is logged and not made.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "collection/albums/PhotoLibrary.h"
#include "platform/Log.h"

namespace lumivane {

struct AlbumChoice {
  bool useAlbum = false;
  std::string selectedAlbum;  // empty = none
  bool operator==(const AlbumChoice&) const = default;
};

// How the controls look. What only folders need (the switch for an index, the change of folder, the smallest size in
// KiB, the skip patterns, with their labels) cannot be used while an album is.
struct AlbumControls {
  bool directoryTreeIsOn = true;  // radio button
  bool albumIsOn = false;         // radio button
  bool folderSettingsEnabled = true;
  bool operator==(const AlbumControls&) const = default;
};
[[nodiscard]] AlbumControls albumListControls(bool on);

struct AlbumAction {
  AlbumChoice choice;                     // after the action
  std::optional<AlbumControls> controls;  // absent: they stay as they are
  bool needsRescan = false;
};

// A click on the radio button of the albums; the table is drawn anew afterwards.
[[nodiscard]] AlbumAction setUseAlbum(AlbumChoice choice, const std::vector<Album>& albums, Log& log);
// A click on the radio button of the folder tree.
[[nodiscard]] AlbumAction setUseDirectoryTree(AlbumChoice choice);
// A click in the table; -1 = no row is selected.
[[nodiscard]] AlbumAction selectAlbum(AlbumChoice choice, const std::vector<Album>& albums, long row);

// One blank row when there are no albums.
[[nodiscard]] std::size_t numberOfRowsInAlbumTable(const std::vector<Album>& albums);
// The album's name, or a space in a blank row.
[[nodiscard]] std::string textOfAlbumRow(const std::vector<Album>& albums, std::size_t row);

}  // namespace lumivane

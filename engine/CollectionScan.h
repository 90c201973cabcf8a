// Replaces a display's collection of pictures: finds them, in folders or in an album, and hands them to the show.
//
// Threads: main only. The walk, the photo library and the storing each have a thread of their own, and tell here.
// Owns:    the running scan, the list of albums, the collection until the show has it.
// Errors:  logged. A scan that fails ends with what it has found, possibly nothing.
//
// While a scan runs, the show stands still and keeps its old collection, which the stored list still names.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "collection/albums/AlbumCollection.h"
#include "engine/AlbumLoader.h"
#include "engine/CollectionStore.h"
#include "engine/FolderScan.h"
#include "engine/Host.h"

namespace lumivane {

class LumivaneView;

class CollectionScan {
 public:
  CollectionScan(LumivaneView& view, const Host& host);
  CollectionScan(const CollectionScan&) = delete;
  CollectionScan& operator=(const CollectionScan&) = delete;
  ~CollectionScan();

  // Begins to read the list of albums; once, when the show begins.
  void loadAlbums();
  // The albums that were found; empty until they are.
  [[nodiscard]] const std::vector<Album>& albums() const { return albums_; }

  // Requires: no scan runs.
  void scanDirectory();
  void scanIPhotoPaths(const std::string& albumName);

  // Writes the show's list, which lost a picture, in the background. The second one waits until that is done.
  void storeShortened(const ImageList& imagefiles);
  void finishShortened() { store_.finishShortened(); }

  // Gives up a scan that runs, because the show moves to another display. Never waits.
  void breakOff();
  // The same, because the show ends: waits for what has begun.
  void end();

 private:
  [[nodiscard]] std::unique_ptr<FolderScan> startFolderScan(const std::string& folder);
  [[nodiscard]] FolderScanEvents events();
  void finishScanning(WalkResult found);
  void showFolders(StoredCollection stored);
  void scanIPhotoPathsFinish(const Result<std::vector<AlbumPicture>>& mediaObjects);
  void albumScanEnded();
  void keepWhatWasWritten(std::optional<StoredCollection> written);

  LumivaneView& view_;
  const Host& host_;
  std::vector<Album> albums_;
  std::string album_;                          // the name of the album being collected
  std::unique_ptr<AlbumLoader> mediaLibrary_;  // nullptr: there is no photo library
  CollectionStore store_;
  std::unique_ptr<FolderScan> folderScan_;  // nullptr: no folder is being searched
};

}  // namespace lumivane

#include "engine/CollectionScan.h"

#include <utility>

#include "collection/FinishedScan.h"
#include "engine/FolderQuestions.h"
#include "engine/FormattedText.h"
#include "engine/LumivaneView.h"
#include "engine/PreferencesSheet.h"
#include "engine/SpotlightScan.h"
#include "engine/WalkScan.h"
#include "platform/PrintableText.h"

namespace lumivane {

CollectionScan::CollectionScan(LumivaneView& view, const Host& host)
    : view_(view), host_(host), store_(host.queues, host.mainLoop, host.files, host.log) {}

CollectionScan::~CollectionScan() = default;

void CollectionScan::loadAlbums() {
  if (host_.photoLibrary == nullptr) {
    view_.logMessage("mediaLibrary is NULL!", true);
    return;
  }
  mediaLibrary_ = std::make_unique<AlbumLoader>(*host_.photoLibrary, host_.queues, host_.mainLoop);
  mediaLibrary_->loadAlbums([this](Result<AlbumList> answer) {
    albums_ = albumsLoaded(std::move(answer), host_.log);
    if (PreferencesSheet* sheet = view_.preferencesSheet()) sheet->reloadAlbumTable();
  });
}

// --- Folders ---

void CollectionScan::scanDirectory() {
  if (!view_.hasFolder()) {
    view_.logMessage("There is no folder to scan!", true);
    view_.startAnimation();
    return;
  }
  const std::string folder = *view_.mainDirectoryLocation();
  view_.logMessage(
      formatted("Scan directory %s  (id = %p)", printable(folder).c_str(), static_cast<void*>(&view_)),
      false);
  if (PreferencesSheet* sheet = view_.preferencesSheet()) sheet->scanStarted();
  view_.setQueryIsInProgress(true);
  folderScan_ = startFolderScan(folder);
}

// Where there is no index, folders are walked whatever the setting says.
std::unique_ptr<FolderScan> CollectionScan::startFolderScan(const std::string& folder) {
  const DisplaySettings& settings = view_.settings();
  view_.logMessage(settings.useSpotlight_ ? "Starting directory scan using spotlight ..."
                                          : "Starting directory scan 'by hand' ...",
                   false);
  if (settings.useSpotlight_ && host_.metadataQuery != nullptr) {
    return std::make_unique<SpotlightScan>(
        SpotlightRequest{folder, settings.excludekB_, settings.excludeSize_, settings.skipPatterns_},
        *host_.metadataQuery, host_.clock, host_.mainLoop, host_.log, &view_, events());
  }
  if (settings.useSpotlight_) view_.logMessage("There is no index; the folders are walked.", false);
  return std::make_unique<WalkScan>(WalkRequest{folder, settings.excludekB_, settings.skipPatterns_, {}},
                                    aliasQuestions(host_.folderChooser, host_.folders.home), host_.mainLoop,
                                    host_.log, &view_, events());
}

FolderScanEvents CollectionScan::events() {
  return {.progressed =
              [this](std::size_t numImages) {
                if (PreferencesSheet* sheet = view_.preferencesSheet())
                  sheet->showNumImages(std::to_string(numImages));
              },
          .logAndDisplay = [this](const std::string& text) { view_.logAndDisplayMessage(text, false); },
          .finished = [this](WalkResult found) { finishScanning(std::move(found)); }};
}

// What the user sees of the end comes first; the list is put in order and stored meanwhile.
void CollectionScan::finishScanning(WalkResult found) {
  if (PreferencesSheet* sheet = view_.preferencesSheet()) {
    sheet->scanFinished(
        scanCountText(view_.settings().useSpotlight_, found.imagefiles.size(), found.rootDirectories.size()));
  }
  store_.storeFolders(std::move(found), host_.collationLocale, view_.imageListPath(),
                      [this](StoredCollection stored) { showFolders(std::move(stored)); });
}

void CollectionScan::showFolders(StoredCollection stored) {
  folderScan_.reset();  // its thread has ended
  if (stored.directoryBookmarks)
    view_.editSettings().directoryBookmarks_ = std::move(*stored.directoryBookmarks);
  view_.saveConfig();
  view_.replaceImageFiles(std::move(stored.imagefiles));
  view_.startWithFreshCollection();
  if (PreferencesSheet* sheet = view_.preferencesSheet()) sheet->collectionIsReady();
}

void CollectionScan::storeShortened(const ImageList& imagefiles) {
  store_.storeShortened(imagefiles, view_.imageListPath());
}

// --- Albums ---

void CollectionScan::scanIPhotoPaths(const std::string& albumName) {
  view_.setQueryIsInProgress(true);
  const Album* album = findAlbum(albums_, albumName, host_.log);
  if (album == nullptr) {
    view_.editSettings().useAlbum_ = false;
    view_.editSettings().selectedAlbum_.clear();
    view_.setQueryIsInProgress(false);
    if (PreferencesSheet* sheet = view_.preferencesSheet()) sheet->albumIsGone();
    return;
  }
  album_ = album->name;
  if (PreferencesSheet* sheet = view_.preferencesSheet()) sheet->scanStarted();
  mediaLibrary_->loadMediaObjects(
      *album, [this](const Result<std::vector<AlbumPicture>>& answer) { scanIPhotoPathsFinish(answer); });
}

void CollectionScan::scanIPhotoPathsFinish(const Result<std::vector<AlbumPicture>>& mediaObjects) {
  CollectedAlbum collected = collectAlbum(album_, mediaObjects, host_.log);
  switch (collected.end) {
    case AlbumEnd::Unreadable:
      albumScanEnded();
      return;
    case AlbumEnd::OutsideLibrary:
      view_.replaceImageFiles({});
      albumScanEnded();
      return;
    case AlbumEnd::Collected:
      view_.setMainDirectoryLocation(collected.mainDirectoryLocation);
      view_.saveConfig();
      break;
    case AlbumEnd::Empty:
      break;
  }
  store_.storeAlbum(std::move(collected.imagefiles), view_.imageListPath(), [this](StoredCollection stored) {
    view_.replaceImageFiles(std::move(stored.imagefiles));
    albumScanEnded();
  });
}

void CollectionScan::albumScanEnded() {
  view_.setQueryIsInProgress(false);
  if (PreferencesSheet* sheet = view_.preferencesSheet())
    sheet->scanFinished(std::to_string(view_.imageFiles().size()));
  view_.startAnimation();
}

// --- A scan that does not reach its end ---

void CollectionScan::breakOff() {
  if (!view_.queryIsInProgress()) return;
  view_.logMessage("Scan broken off: the window stands on another display.", true);
  if (mediaLibrary_) mediaLibrary_->cancelMediaObjects();
  if (folderScan_) store_.discard(std::move(folderScan_));
  keepWhatWasWritten(store_.cancel());
  view_.setQueryIsInProgress(false);
  if (PreferencesSheet* sheet = view_.preferencesSheet()) sheet->scanStopped();
}

void CollectionScan::end() {
  folderScan_.reset();
  mediaLibrary_.reset();
  keepWhatWasWritten(store_.finish());
}

// The list and the folders that it was made from belong together.
void CollectionScan::keepWhatWasWritten(std::optional<StoredCollection> written) {
  if (!written || !written->directoryBookmarks) return;
  view_.editSettings().directoryBookmarks_ = std::move(*written->directoryBookmarks);
  view_.saveConfig();
}

}  // namespace lumivane

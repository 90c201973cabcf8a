// What this display remembers: its settings, its list of pictures, and where the show stopped.
#include "collection/FolderBookmarks.h"
#include "collection/ImageListFile.h"
#include "engine/CollectionScan.h"
#include "engine/FormattedText.h"
#include "engine/LumivaneView.h"
#include "engine/PreferencesSheet.h"
#include "platform/DateText.h"
#include "platform/PrintableText.h"
#include "settings/DisplayFileName.h"
#include "settings/HelpText.h"

namespace lumivane {
namespace {

std::string describeDate(const std::optional<WallTime>& date) {
  return date ? dateText(*date) : "(null)";
}

}  // namespace

void LumivaneView::loadPreferences(const std::string& displayName) {
  displayMessage("Loading ..", std::nullopt);
  settings_ = preferences_.load(displayName, emptyBookmarks());
  if (settings_.useAlbum_) {
    logMessage("Selected Album = " + printable(settings_.selectedAlbum_), false);
  } else {
    resolveBookmarks(displayName);
  }
  // The next picture is due at once, but for the stagger between displays.
  const float sinceLastChange = static_cast<float>(settings_.durationPerImage_) - time_offset_;
  lastFrameTime_ = host_.clock.now() - wholeNanoseconds(Seconds{static_cast<double>(sinceLastChange)});
  logMessage(formatted("duration per image = %d", settings_.durationPerImage_), false);
  if (preferencesSheet_) preferencesSheet_->fillControls();
  settings_.useAlbum_ = false;  // albums cannot be chosen yet, whatever was stored
  helptext_ = std::string(helpText(settings_.enableDeleteAtRuntime_));
}

// A disk that is asleep or gone may answer late. By then the user may have chosen another folder.
void LumivaneView::resolveBookmarks(const std::string& displayName) {
  const std::vector<FolderBookmark>& bookmarks = settings_.directoryBookmarks_;
  const auto assumed = recordedFolders(bookmarks).mainDirectoryLocation;
  const auto late = [this, assumed, displayName](const ResolvedBookmarks& resolved) {
    if (mainDirectoryLocation_ == assumed) bookmarksResolved(resolved, displayName);
  };
  bookmarksResolved(folderLookup_.resolve(bookmarks, late), displayName);
}

void LumivaneView::bookmarksResolved(const ResolvedBookmarks& resolved, const std::string& displayName) {
  mainDirectoryLocation_ = resolved.mainDirectoryLocation;
  if (resolved.moved) displayErrorMessage(std::string(kFoldersMovedMessage), "");
  logMessage("Directory location = " + printable(mainDirectoryLocation_.value_or("(null)")), false);
  std::string folders;
  for (const std::string& folder : resolved.opened)
    folders += (folders.empty() ? "" : ", ") + printable(folder);
  logMessage("Directory bookmarks = (" + folders + ")", false);
  if (!mainDirectoryLocation_)
    displayErrorMessage("Change pics folder in Preferences for monitor " + printable(displayName), "");
}

void LumivaneView::saveConfig() {
  preferences_.save(settings_);
}

// --- The list of pictures ---

void LumivaneView::loadImageList(const std::string& displayName) {
  imageListPath_ = supportFile(imageListFileName(fileNameToken(displayName)));
  collectionScan_->finishShortened();
  imagefiles_ = lumivane::loadImageList(host_.files, imageListPath_, host_.log);
  abandonPrefetch();
  if (preferencesSheet_) preferencesSheet_->showNumImages(std::to_string(imagefiles_.size()));
  order_.refill(imagefiles_.size());
}

void LumivaneView::saveImageList() {
  collectionScan_->storeShortened(imagefiles_);
}

// --- Where the show stopped ---

void LumivaneView::loadLastRunInfo(const std::string& displayName) {
  const std::string path = supportFile("LumivaneLastRunInfo." + fileNameToken(displayName) + ".plist");
  const auto run = lastRunRecord_.loadLastRunInfo(path, {img_index_, last_scan_});
  if (!run) return;
  img_index_ = run->imageIndex;
  last_scan_ = run->lastScan;
  logMessage("LastRunInfo: " + std::to_string(static_cast<std::int64_t>(img_index_)) + ", " +
                 describeDate(last_scan_),
             false);
  if (settings_.startWithRandom_) {
    img_index_ = imagefiles_.empty() ? 0 : randomPosition(host_.random, imagefiles_.size());
  } else {
    img_index_ = resumePosition(img_index_, imagefiles_.size());
  }
  logMessage("lastRunInfo: img_index_ = " + std::to_string(img_index_) +
                 " , last scan = " + describeDate(last_scan_),
             false);
}

void LumivaneView::saveLastRunInfo() {
  lastRunRecord_.saveLastRunInfo({img_index_, last_scan_});
}

std::string LumivaneView::supportFile(const std::string& name) const {
  return appSupportDir_.empty() ? std::string() : appSupportDir_ + "/" + name;
}

}  // namespace lumivane

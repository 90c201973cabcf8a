// What the sheet shows, and how it opens and closes.
#include "engine/PreferencesSheet.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "engine/CollectionScan.h"
#include "engine/LumivaneView.h"
#include "settings/SettingsTable.h"
#include "settings/SheetRules.h"

namespace lumivane {
namespace {

using enum SheetControl;

constexpr const char* kHelpDocument = "Help_ReadMe_Changelog_LumivaneApp";

std::string versionLabel(const ProgramVersion& version) {
  return "Version " + (version.shortVersion.empty() ? "?" : version.shortVersion) + " (#" +
         (version.build.empty() ? "??" : version.build) + ")";
}

}  // namespace

PreferencesSheet::PreferencesSheet(LumivaneView& view, const Host& host)
    : view_(view), host_(host), sheet_(*host.configureSheet) {
  sheet_.setText(version_label_, versionLabel(host.programVersion));
  sheet_.setActions(this);
}

PreferencesSheet::~PreferencesSheet() {
  sheet_.setActions(nullptr);
}

void PreferencesSheet::beginSheet(std::function<void()> whenEnded) {
  if (!sheet_.isShown()) whenEnded_ = std::move(whenEnded);
  sheet_.setEnabled(applyView_, !view_.queryIsInProgress());
  sheet_.begin();
}

void PreferencesSheet::endSheet() {
  sheet_.end();
  if (const auto ended = std::exchange(whenEnded_, nullptr)) ended();
}

// --- Filling ---

void PreferencesSheet::fillDisplayChooser() {
  const std::vector<std::string>& names = view_.allScreenNames();
  sheet_.setItems(currentScreenView_, names);
  const auto ours = std::ranges::find(names, view_.displayName());
  if (ours == names.end()) {
    sheet_.selectItem(currentScreenView_, std::nullopt);
  } else {
    sheet_.selectItem(currentScreenView_, static_cast<std::size_t>(ours - names.begin()));
  }
}

void PreferencesSheet::loadHelpDocument() {
  if (host_.helpPanel == nullptr) return;
  if (!host_.helpPanel->loadDocument(kHelpDocument))
    view_.logMessage("locating " + std::string(kHelpDocument) + ".rtf failed", true);
}

void PreferencesSheet::fillControls() {
  const DisplaySettings& settings = view_.settings();
  sheet_.setText(directoryPathView_, view_.mainDirectoryLocation().value_or(std::string()));
  fillNumbers();
  fillSwitches();
  sheet_.setEnabled(startWithRandomView_, settings.dontRandomize_);
  sheet_.setSlider(blackBordersThresholdSlider_, settings.blackBorderAvoidance_);
  sheet_.setSlider(crossDissolveDurationSlider_, settings.crossDissolveDuration_);
  sheet_.setText(skipPatternsView_, joinedLines(settings.skipPatterns_));
  enableZoomParameters(settings.zoomIsOn_);
  enableAlbumListControls(false);
  sheet_.setEnabled(useAlbumView_, false);  // albums are chosen in their table
  sheet_.setEnabled(showFileExtensionView_, settings.displayFilename_);
}

void PreferencesSheet::fillNumbers() {
  const DisplaySettings& settings = view_.settings();
  sheet_.setText(durationPerImageView_, fieldText(settings.durationPerImage_));
  sheet_.setText(initZoomInFactorView_, fieldText(settings.initZoomInFactor_));
  sheet_.setText(excludeSizeView_, fieldText(settings.excludeSize_));
  sheet_.setText(excludekBView_, fieldText(settings.excludekB_));
  sheet_.setText(fontSizeView_, fieldText(settings.fontSize_));
  sheet_.setText(infoDelayView_, fieldText(settings.infoDelay_));
}

void PreferencesSheet::fillSwitches() {
  const DisplaySettings& settings = view_.settings();
  sheet_.setOn(useSpotlightView_, settings.useSpotlight_);
  sheet_.setOn(useDirectorySearchView_, !settings.useSpotlight_);
  sheet_.setOn(showImagePathView_, settings.showImagePath_);
  sheet_.setOn(displayFilenameView_, settings.displayFilename_);
  sheet_.setOn(showFileExtensionView_, settings.showFileExtension_);
  sheet_.setOn(showImageInfoView_, settings.showImageInfo_);
  sheet_.setOn(zoomIsOnView_, settings.zoomIsOn_);
  sheet_.setOn(kenBurnsView_, settings.kenBurnsIsOn_);
  sheet_.setOn(dontRandomizeView_, !settings.dontRandomize_);
  sheet_.setOn(startWithRandomView_, settings.startWithRandom_);
  sheet_.setOn(allowBlackBordersView_, !settings.allowBlackBorders_);
  sheet_.setOn(crossDissolveView_, settings.crossDissolve_);
  sheet_.setOn(enableDeleteView_, settings.enableDeleteAtRuntime_);
}

// The black borders can be avoided only where a plain zoom leaves a choice.
void PreferencesSheet::enableZoomParameters(bool enabled) {
  for (const SheetControl control : {initZoomInFactorView_, initZoomInFactorLabelView_,
                                     allowBlackBordersView_, blackBordersThresholdSlider_})
    sheet_.setEnabled(control, enabled);
}

void PreferencesSheet::enableAlbumListControls(bool on) {
  const AlbumControls controls = albumListControls(on);
  sheet_.setOn(useDirectoryTreeView_, controls.directoryTreeIsOn);
  sheet_.setOn(useAlbumView_, controls.albumIsOn);
  for (const SheetControl control : {useSpotlightView_, changeDirectoryView_, excludekBView_,
                                     skipPatternsView_, excludekBLabelView_, skipPatternsLabelView_})
    sheet_.setEnabled(control, controls.folderSettingsEnabled);
}

void PreferencesSheet::reloadAlbumTable() {
  const std::vector<Album>& albums = view_.collectionScan().albums();
  std::vector<std::string> rows;
  for (std::size_t row = 0; row < numberOfRowsInAlbumTable(albums); ++row)
    rows.push_back(textOfAlbumRow(albums, row));
  sheet_.setItems(albumView_, rows);
  const auto chosen = std::ranges::find(albums, view_.settings().selectedAlbum_, &Album::name);
  if (chosen != albums.end() && view_.settings().useAlbum_)
    sheet_.selectItem(albumView_, static_cast<std::size_t>(chosen - albums.begin()));
}

// --- What a scan shows ---

void PreferencesSheet::showNumImages(const std::string& count) {
  sheet_.setText(num_images_, count);
}

void PreferencesSheet::scanStarted() {
  sheet_.setProgressSpinning(true);
  showNumImages("0");
}

void PreferencesSheet::scanStopped() {
  sheet_.setProgressSpinning(false);
  sheet_.setEnabled(applyView_, true);
}

void PreferencesSheet::scanFinished(const std::string& count) {
  showNumImages(count);
  scanStopped();
  endSheet();
}

void PreferencesSheet::collectionIsReady() {
  sheet_.setEnabled(applyView_, true);
}

void PreferencesSheet::albumIsGone() {
  enableAlbumListControls(false);
}

// --- Closing ---

void PreferencesSheet::needsRescan() {
  rescan_ = true;
  showNumImages(" ");
  sheet_.setEnabled(currentScreenView_, false);
}

// Some of what was typed may not have been confirmed yet.
void PreferencesSheet::applyTypedFields() {
  setDurationPerImage();
  setInitZoomInfactor();
  setExcludeSize();
  setExcludekB();
  setSkipPatterns();
  setFontSize();
  setInfoDelay();
}

void PreferencesSheet::closeSheet() {
  if (view_.queryIsInProgress()) return;  // the scan closes the sheet
  applyTypedFields();
  DisplaySettings& settings = view_.editSettings();
  if (settings.useAlbum_ && settings.selectedAlbum_.empty()) {
    view_.logAndDisplayMessage("You have not chosen any Photos album - reverting to folder.", false);
    settings.useAlbum_ = false;
    enableAlbumListControls(false);
  }
  if (rescan_ && (settings.useAlbum_ || view_.hasFolder())) {
    startScan();
    return;
  }
  // A rescan without a folder has nothing to scan.
  if (std::exchange(rescan_, false)) sheet_.setEnabled(currentScreenView_, true);
  endSheet();
  view_.saveConfig();
  view_.startAnimation();
}

void PreferencesSheet::startScan() {
  rescan_ = false;
  view_.scanForImages();
  sheet_.setEnabled(currentScreenView_, true);
  sheet_.setEnabled(applyView_, !view_.queryIsInProgress());
}

}  // namespace lumivane

// What each control of the sheet does.
#include <utility>

#include "engine/CollectionScan.h"
#include "engine/DroppedFile.h"
#include "engine/FolderQuestions.h"
#include "engine/LumivaneView.h"
#include "engine/PreferencesSheet.h"
#include "platform/PrintableText.h"
#include "settings/SettingsTable.h"
#include "settings/SheetRules.h"

namespace lumivane {
namespace {

using enum SheetControl;

}  // namespace

// --- Numbers and texts: each shows what came of what was typed ---

std::int32_t PreferencesSheet::wholeNumber(SheetControl control) const {
  return wholeNumberOfField(sheet_.text(control));
}

void PreferencesSheet::setDurationPerImage() {
  std::int32_t& duration = view_.editSettings().durationPerImage_;
  const std::int32_t accepted = acceptedDuration(wholeNumber(durationPerImageView_), duration);
  const bool differs = std::exchange(duration, accepted) != accepted;
  if (differs) view_.startNewCycle();
  sheet_.setText(durationPerImageView_, fieldText(duration));
}

void PreferencesSheet::setInitZoomInfactor() {
  float& factor = view_.editSettings().initZoomInFactor_;
  const ZoomInFactorEntry entry =
      acceptedZoomInFactor(decimalNumberOfField(sheet_.text(initZoomInFactorView_)), factor);
  factor = entry.initZoomInFactor;
  if (entry.startsNewCycle) view_.startNewCycle();
  sheet_.setText(initZoomInFactorView_, fieldText(factor));
}

// Whether anything changes is judged by what was typed, not by what is made of it.
void PreferencesSheet::setExcludeSize() {
  std::uint32_t& size = view_.editSettings().excludeSize_;
  const std::int32_t entered = wholeNumber(excludeSizeView_);
  if (static_cast<std::uint32_t>(entered) != size) needsRescan();
  size = acceptedExcludeSize(entered);
  sheet_.setText(excludeSizeView_, fieldText(size));
}

void PreferencesSheet::setExcludekB() {
  std::uint32_t& kB = view_.editSettings().excludekB_;
  const auto entered = static_cast<std::uint32_t>(wholeNumber(excludekBView_));
  if (std::exchange(kB, entered) != entered) needsRescan();
  sheet_.setText(excludekBView_, fieldText(kB));
}

void PreferencesSheet::setSkipPatterns() {
  std::vector<std::string>& patterns = view_.editSettings().skipPatterns_;
  const std::string text = sheet_.text(skipPatternsView_);
  if (joinedLines(patterns) == text) return;
  needsRescan();
  patterns = skipPatternsOf(text);
  sheet_.setText(skipPatternsView_, joinedLines(patterns));
}

void PreferencesSheet::textDidBeginEditing() {
  needsRescan();
}

void PreferencesSheet::controlTextDidBeginEditing() {
  needsRescan();
}

void PreferencesSheet::setFontSize() {
  std::uint32_t& size = view_.editSettings().fontSize_;
  size = acceptedFontSize(wholeNumber(fontSizeView_));
  view_.refreshTextLayer();
  sheet_.setText(fontSizeView_, fieldText(size));
}

void PreferencesSheet::setInfoDelay() {
  DisplaySettings& settings = view_.editSettings();
  settings.infoDelay_ = acceptedInfoDelay(wholeNumber(infoDelayView_), settings.durationPerImage_);
  sheet_.setText(infoDelayView_, fieldText(settings.infoDelay_));
}

// --- Switches and sliders ---

void PreferencesSheet::setUseSpotlight() {
  view_.editSettings().useSpotlight_ = sheet_.isOn(useSpotlightView_);
  needsRescan();
}

// A switch that decides what the information line says.
void PreferencesSheet::switchText(bool DisplaySettings::*field, SheetControl control) {
  view_.editSettings().*field = sheet_.isOn(control);
  view_.refreshTextLines();
}

void PreferencesSheet::setShowImagePath() {
  switchText(&DisplaySettings::showImagePath_, showImagePathView_);
}

void PreferencesSheet::setDisplayFilename() {
  sheet_.setEnabled(showFileExtensionView_, sheet_.isOn(displayFilenameView_));
  switchText(&DisplaySettings::displayFilename_, displayFilenameView_);
}

void PreferencesSheet::setShowFileExtension() {
  switchText(&DisplaySettings::showFileExtension_, showFileExtensionView_);
}

void PreferencesSheet::setShowImageInfo() {
  switchText(&DisplaySettings::showImageInfo_, showImageInfoView_);
}

void PreferencesSheet::setZoomIsOn() {
  DisplaySettings& settings = view_.editSettings();
  settings.zoomIsOn_ = sheet_.isOn(zoomIsOnView_);
  if (settings.zoomIsOn_) {
    settings.kenBurnsIsOn_ = false;
    sheet_.setOn(kenBurnsView_, false);
  }
  enableZoomParameters(settings.zoomIsOn_);
  view_.startNewCycle();
}

void PreferencesSheet::setKenBurnsIsOn() {
  DisplaySettings& settings = view_.editSettings();
  settings.kenBurnsIsOn_ = sheet_.isOn(kenBurnsView_);
  if (settings.kenBurnsIsOn_) {
    settings.zoomIsOn_ = false;
    sheet_.setOn(zoomIsOnView_, false);
  }
  enableZoomParameters(settings.zoomIsOn_);
  view_.startNewCycle();
}

void PreferencesSheet::dontRandomize() {
  bool& dontRandomize = view_.editSettings().dontRandomize_;
  dontRandomize = !sheet_.isOn(dontRandomizeView_);
  sheet_.setEnabled(startWithRandomView_, dontRandomize);
}

void PreferencesSheet::startWithRandom() {
  view_.editSettings().startWithRandom_ = sheet_.isOn(startWithRandomView_);
}

void PreferencesSheet::allowBlackBorders() {
  view_.editSettings().allowBlackBorders_ = !sheet_.isOn(allowBlackBordersView_);
}

void PreferencesSheet::newBlackBordersThreshold(float value) {
  view_.editSettings().blackBorderAvoidance_ = value;
}

void PreferencesSheet::setCrossDissolve() {
  view_.editSettings().crossDissolve_ = sheet_.isOn(crossDissolveView_);
}

void PreferencesSheet::newCrossDissolveDuration(float value) {
  view_.editSettings().crossDissolveDuration_ = value;
}

void PreferencesSheet::setEnableDeleteAtRuntime() {
  view_.editSettings().enableDeleteAtRuntime_ = sheet_.isOn(enableDeleteView_);
}

// --- Display ---

// What a running scan brings belongs to the display that it was started for.
void PreferencesSheet::changeScreen() {
  const std::optional<std::size_t> position = sheet_.selectedItem(currentScreenView_);
  if (!position || *position >= view_.allScreenNames().size()) return;
  if (view_.allScreenNames()[*position] == view_.displayName()) return;
  if (view_.queryIsInProgress()) {
    fillDisplayChooser();
    return;
  }
  view_.editDisplay(*position);
}

// --- Folder ---

void PreferencesSheet::selectDirectory() {
  view_.stopAnimation();
  askUserToOpenDirectory(host_.folderChooser,
                         folderQuestion(view_.mainDirectoryLocation(), false, host_.folders.home),
                         [this, alive = std::weak_ptr(alive_)](const FolderAnswer& answer) {
                           if (alive.expired() || answer.response != kUserConfirmed) return;
                           static_cast<void>(changeFolder(answer.folder));
                         });
}

bool PreferencesSheet::changeFolder(const std::string& chosen) {
  const std::string path = withoutTrailingSlashes(chosen);
  if (!path.starts_with('/') || path == view_.mainDirectoryLocation()) return false;
  showNumImages(" ");
  const std::string folder = picturesFolderFor(path);
  view_.setMainDirectoryLocation(folder);
  view_.logMessage("User selected directory: " + printable(folder), false);
  sheet_.setText(directoryPathView_, folder);
  needsRescan();
  return true;
}

void PreferencesSheet::fileDropped(const std::string& path) {
  askFolderOfDroppedFile(host_.boundedCalls, host_.mainLoop, path,
                         [this, path, alive = std::weak_ptr(alive_)](const std::string& folder) {
                           if (alive.expired()) return;
                           if (!folder.empty()) return folderDropped(folder);
                           view_.logMessage("What was dropped is not there: " + printable(path), true);
                         });
}

void PreferencesSheet::folderDropped(const std::string& folder) {
  if (view_.queryIsInProgress()) {
    view_.logMessage("A scan is running; the folder is not taken: " + printable(folder), false);
    return;
  }
  if (!changeFolder(folder)) return;
  if (view_.settings().useAlbum_) setUseDirectoryTree();
  if (sheet_.isShown()) {
    sheet_.begin();
  } else {
    startScan();
  }
}

void PreferencesSheet::rescanDirectory() {
  if (view_.settings().useAlbum_) {
    view_.logMessage("Rescan album: " + printable(view_.settings().selectedAlbum_), false);
  } else {
    const std::string folder = view_.mainDirectoryLocation().value_or("(null)");
    view_.logMessage("Rescan directory: " + printable(folder), false);
  }
  needsRescan();
}

// --- Album ---

AlbumChoice PreferencesSheet::albumChoice() const {
  return {view_.settings().useAlbum_, view_.settings().selectedAlbum_};
}

void PreferencesSheet::take(const AlbumAction& action) {
  view_.editSettings().useAlbum_ = action.choice.useAlbum;
  view_.editSettings().selectedAlbum_ = action.choice.selectedAlbum;
  if (action.controls) enableAlbumListControls(action.controls->albumIsOn);
  if (action.needsRescan) needsRescan();
}

void PreferencesSheet::setUseAlbum() {
  take(lumivane::setUseAlbum(albumChoice(), view_.collectionScan().albums(), host_.log));
  reloadAlbumTable();
}

void PreferencesSheet::setUseDirectoryTree() {
  take(lumivane::setUseDirectoryTree(albumChoice()));
}

void PreferencesSheet::selectAlbum() {
  const std::optional<std::size_t> row = sheet_.selectedItem(albumView_);
  take(lumivane::selectAlbum(albumChoice(), view_.collectionScan().albums(),
                             row ? static_cast<long>(*row) : -1));
}

// --- What leads out of the sheet ---

void PreferencesSheet::showHelpSheet() {
  if (host_.helpPanel != nullptr) host_.helpPanel->orderFront();
}

void PreferencesSheet::open(const OutsideLink& link) {
  if (host_.workspace != nullptr) openLink(link, *host_.workspace, host_.log);
}

void PreferencesSheet::donateDonorbox() {
  open(kDonationLink);
}

void PreferencesSheet::feedback() {
  open(kFeedbackLink);
}

void PreferencesSheet::gotoHomepage() {
  open(kHomepageLink);
}

}  // namespace lumivane

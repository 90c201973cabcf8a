// The slideshow of one display: which picture is shown, when it changes, how it moves and what is written below it.
//
// Threads: main only. Decoding runs on the prefetch queue and hands over plain data through the main loop.
// Owns:    the layer tree, the picture list, the history, the settings in force.
// Units:   points, origin lower left, y up; seconds and media time.
// Errors:  none leaves the view. What fails is logged, shown where the user must know, and the show goes on.
//
// The operations are spread over files named after their subject: LumivaneViewSetup, ...Display, ...FrameLoop,
// ...PictureChange, ...Prefetch, ...Order, ...Messages, ...Places, ...Settings, ...Scan, ...Keys, ...Deletion.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "collection/ImageList.h"
#include "compositor/model/Layer.h"
#include "engine/FolderLookup.h"
#include "engine/Host.h"
#include "engine/ImageHistory.h"
#include "engine/ImageOrder.h"
#include "engine/LastRunRecord.h"
#include "engine/PictureDeletion.h"
#include "engine/PrefetchSlot.h"
#include "imaging/ImageInfo.h"
#include "imaging/LayerText.h"
#include "imaging/PanAndZoom.h"
#include "imaging/PictureLayers.h"
#include "imaging/PictureLoading.h"
#include "settings/DisplaySettings.h"
#include "settings/PreferencesStore.h"

namespace lumivane {

class CollectionScan;
class PreferencesSheet;

class LumivaneView {
 public:
  // --- Set-up ---
  static std::unique_ptr<LumivaneView> initWithFrame(RectPt frame, bool isPreview, const Host& host);
  ~LumivaneView();
  LumivaneView(const LumivaneView&) = delete;
  LumivaneView& operator=(const LumivaneView&) = delete;

  // --- The display and the window ---
  void viewWillMoveToWindow(HostWindow* window);
  void adjustLayersToNewSize(RectPt rectangle);
  void viewDidEndLiveResize();
  // The text layers are drawn for this many device pixels a point.
  void setContentsScale(double scale);

  // --- The frame loop ---
  void animateOneFrame();
  // When the frame loop will have something to do, if nothing happens meanwhile; a time that has passed: at once;
  // nothing: not at all. A frame before that does nothing.
  [[nodiscard]] std::optional<MediaTime> nextFrameWanted() const;
  void startAnimation();
  void stopAnimation();
  void pauseAnimation();
  void resumeAnimation();
  [[nodiscard]] static constexpr Seconds animationTimeInterval() { return Seconds{0.1}; }

  // --- The order of the pictures ---
  [[nodiscard]] ImageIndex nextImageIndex(ImageIndex current);
  void startNewCycle();
  void startNewCycleWithFreshImageList();

  // --- Messages ---
  void logMessage(std::string_view text, bool asError);
  void logAndDisplayMessage(const std::string& text, bool asError);
  void logAndDisplayMessage(const std::string& text, const std::string& with, bool asError);
  void displayErrorMessage(const std::string& text, const std::string& with);
  void displayMessage(const std::optional<std::string>& firstLine,
                      const std::optional<std::string>& secondLine);
  void printFilename(const std::string& path, const std::optional<std::string>& info = std::nullopt);
  void displayFilename(const std::string& path, const ImageInfo& info);
  void displayNewLocation(const Result<std::vector<Placemark>>& answer);
  void refreshTextLayer();
  void refreshTextLines();

  // --- Settings, list and record of this display ---
  void loadPreferences(const std::string& displayName);
  void saveConfig();
  void loadImageList(const std::string& displayName);
  void saveImageList();
  void loadLastRunInfo(const std::string& displayName);
  void saveLastRunInfo();
  // Changes what is edited and shown to another display's, by its position among all displays.
  void editDisplay(std::size_t position);
  [[nodiscard]] DisplaySettings& editSettings() { return settings_; }

  // --- The collection ---
  void scanForImages();
  void replaceImageFiles(ImageList imagefiles);
  void startWithFreshCollection();
  void setQueryIsInProgress(bool inProgress) { queryIsInProgress_ = inProgress; }
  void setMainDirectoryLocation(std::string folder) { mainDirectoryLocation_ = std::move(folder); }
  [[nodiscard]] CollectionScan& collectionScan() { return *collectionScan_; }

  // --- Keys ---
  void keyDown(const KeyEvent& event);
  void flagsChanged(Modifiers held);

  // --- What the host sets and asks ---
  void setWindowResizingHappened(bool happened) { windowResizingHappened_ = happened; }
  void setScreensaverSurrogateMode(bool surrogate) { screensaver_surrogate_mode_ = surrogate; }
  [[nodiscard]] Layer& mainLayer() { return *mainLayer_; }
  [[nodiscard]] const Layer& mainLayer() const { return *mainLayer_; }
  // Whether pictures come and go by themselves now.
  [[nodiscard]] bool isRunning() const { return !pause_animation_ && !paused_ && !blankScreen_; }
  [[nodiscard]] const std::string& displayName() const { return displayName_; }
  [[nodiscard]] DisplayNumber displayNumber() const { return displayID_; }
  [[nodiscard]] PreferencesSheet* preferencesSheet() { return preferencesSheet_.get(); }  // nullptr: none
  [[nodiscard]] bool queryIsInProgress() const { return queryIsInProgress_; }
  [[nodiscard]] bool hasFolder() const { return mainDirectoryLocation_.has_value(); }
  [[nodiscard]] std::optional<std::string> mainDirectoryLocation() const { return mainDirectoryLocation_; }
  [[nodiscard]] const std::string& imageListPath() const { return imageListPath_; }

  // --- What tests look at ---
  [[nodiscard]] const Layer* currentLayer() const { return currentLayer_; }
  [[nodiscard]] const Layer* formerLayer() const { return formerLayer_; }
  [[nodiscard]] const Layer* prefetchLayer() const { return prefetchLayer_; }
  [[nodiscard]] const Layer& textLayer() const { return *textLayer_; }
  [[nodiscard]] const Layer& helpLayer() const { return *help_layer_; }
  [[nodiscard]] const DisplaySettings& settings() const { return settings_; }
  [[nodiscard]] const std::string& filename() const { return filename_; }
  [[nodiscard]] ImageIndex imageIndex() const { return img_index_; }
  [[nodiscard]] const ImageList& imageFiles() const { return imagefiles_; }
  [[nodiscard]] const IndexList& imagesNotYetShown() const { return order_.imagesNotYetShown(); }
  [[nodiscard]] const ImageHistory& history() const { return history_; }
  [[nodiscard]] const PrefetchSlot& prefetchSlot() const { return prefetch_; }
  [[nodiscard]] const std::string& firstLine() const { return errmesg_; }
  [[nodiscard]] const std::optional<std::string>& secondLine() const { return infoLine_; }
  [[nodiscard]] bool firstLineIsError() const { return errmsgIsError_; }
  [[nodiscard]] const std::string& shownText() const { return shownText_; }
  [[nodiscard]] double helpFontSize() const { return helpFontSize_; }
  [[nodiscard]] Seconds actualFadingDuration() const { return actual_fading_duration_; }
  [[nodiscard]] float timeOffset() const { return time_offset_; }
  [[nodiscard]] bool zoomIn() const { return zoomIn_; }
  [[nodiscard]] const std::vector<std::string>& allScreenNames() const { return allScreenNames_; }

 private:
  LumivaneView(RectPt frame, const Host& host);

  // Set-up, the display and the window
  void makeLayers(RectPt frame);
  void setUpPhotoLibrary();
  void listDisplays();
  void forgetPicturesInHand();
  void placeTextLayer(double screenHeight);

  // The frame loop
  void playPendingKey();
  void freezeMotion();
  [[nodiscard]] bool changeIsDue() const;
  [[nodiscard]] Nanoseconds timeSinceLastChange() const;

  // A change of picture: each of these is one step of it
  void changePicture();
  [[nodiscard]] Seconds fadeDuration() const;
  [[nodiscard]] bool choosePicture();  // false: nothing new is shown now
  void showHistoryEntry();
  void loadDuePicture();
  void duePictureAnswered(LoadOutcome outcome, const std::string& path, std::uint64_t changesBefore);
  void takePrefetchedPicture();
  [[nodiscard]] ImageInfo readImageInfo() const;
  void scheduleInformationLine(const ImageInfo& info, Seconds fade);
  void showInformationLine(const ImageInfo& info);
  [[nodiscard]] PictureStage stage() const;
  [[nodiscard]] std::unique_ptr<Layer> makePictureLayer(const ImageInfo& info);
  void putOnScreen(std::unique_ptr<Layer> layer, Seconds fade);
  void fadeInto(std::unique_ptr<Layer> layer, Seconds fade);
  void cutTo(std::unique_ptr<Layer> layer);
  void replaceCurrentLayer(std::unique_ptr<Layer> layer);
  void removeFromMainLayer(Layer*& layer);

  // Prefetching
  void schedulePrefetch();
  void loadNextImage();
  void loadOnQueue(const std::string& path, std::function<void(LoadOutcome outcome)> answered);
  void tryNextPrefetch(int triesLeft);
  void prefetchAnswered(LoadOutcome outcome, int triesLeft);
  void acceptPrefetched(LoadedPicture picture);
  void abandonPrefetch();
  [[nodiscard]] LoadLimits loadLimits() const;
  void tell(const std::vector<LoadMessage>& messages);
  [[nodiscard]] std::string pathAt(ImageIndex index) const;  // empty beyond the list

  // Texts
  void makeTextLayerRectangle(Layer& layer, double fontSizePt, std::string_view text, bool adjustWidth);
  void requestPlace(double latitude, double longitude);

  // Settings
  void resolveBookmarks(const std::string& displayName);
  void bookmarksResolved(const ResolvedBookmarks& resolved, const std::string& displayName);
  [[nodiscard]] std::string supportFile(const std::string& name) const;

  // Keys
  [[nodiscard]] bool actOnKey(const KeyEvent& event);  // whether the other displays are to follow
  void forwardToOtherDisplays(const KeyEvent& event);
  void stepBack();
  void stepForward();
  void askForOtherPicture();
  void rewriteInformationLine();
  void toggleBlankScreen();
  [[nodiscard]] bool togglePauseZooming();
  void revealShownFiles();
  [[nodiscard]] bool leaveFullScreen();
  [[nodiscard]] bool standsInForScreenSaver() const;

  // Deletion
  [[nodiscard]] bool deleteShownImage();
  [[nodiscard]] bool shownFileIsNamed();
  void shownImageDeleted(const std::string& path, ImageIndex index, const DeletionOutcome& outcome);
  void forgetImageAt(ImageIndex index);

  // A job that does nothing once this view is gone.
  [[nodiscard]] Job whileAlive(Job job) const;
  [[nodiscard]] Seconds mediaNow() const { return mediaSeconds(host_.clock.now()); }

  // Constant after construction
  Host host_;
  std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
  std::unique_ptr<SerialQueue> prefetch_queue_;  // nullptr without an application-support folder
  std::string appSupportDir_;

  // Main thread only: the display
  HostWindow* window_ = nullptr;
  RectPt drawRect_;
  double contentsScale_ = 1;
  DisplayNumber displayID_ = 0;
  std::string displayName_;
  std::vector<DisplayNumber> allScreenIDs_;
  std::vector<std::string> allScreenNames_;
  float time_offset_ = 0;  // seconds

  // Main thread only: the slideshow
  std::string imageListPath_;  // empty without an application-support folder
  ImageList imagefiles_;
  std::optional<std::string> mainDirectoryLocation_;
  std::optional<WallTime> last_scan_;
  std::string filename_;
  ImageIndex img_index_ = 0;
  std::string current_image_path_;  // not filename_ where the list has shrunk since the picture was stored
  BitmapRef current_image_;
  std::shared_ptr<const PropertyDictionary> current_image_props_;
  std::uint64_t pictureChanges_ = 0;  // how often another picture came on the screen
  std::uint64_t listGeneration_ = 0;  // tells a prefetch that its list has gone
  ImageOrder order_;
  ImageHistory history_;
  PrefetchSlot prefetch_;
  LastRunRecord lastRunRecord_;
  PictureDeletion deletion_;
  FolderLookup folderLookup_;
  MediaTime lastFrameTime_{};
  Seconds actual_fading_duration_{0};
  bool zoomIn_ = false;

  // Main thread only: the state of the show
  bool displayImageFromHistory_ = false;
  bool windowResizingHappened_ = false;
  bool otherPictureAskedFor_ = false;
  bool screensaver_surrogate_mode_ = false;
  bool paused_ = false;
  bool pauseZooming_ = false;
  bool muteTextDisplay_ = false;
  bool blankScreen_ = false;
  bool queryIsInProgress_ = false;
  bool pause_animation_ = false;

  // Main thread only: layers, all below mainLayer_
  std::unique_ptr<Layer> mainLayer_;
  Layer* currentLayer_ = nullptr;
  Layer* formerLayer_ = nullptr;
  Layer* prefetchLayer_ = nullptr;
  Layer* textLayer_ = nullptr;
  Layer* help_layer_ = nullptr;

  // Main thread only: texts
  std::string errmesg_ = " ";
  bool errmsgIsError_ = false;
  std::optional<std::string> infoLine_;
  std::string informationOf_;  // the picture that the three below tell of
  std::optional<std::string> img_description_;
  std::optional<std::string> img_place_;
  std::optional<std::string> img_date_;
  std::string shownText_;
  LayerText shownInformation_;
  LayerText shownHelp_;
  double helpFontSize_ = 10;
  std::string helptext_;

  // Main thread only: settings
  DisplaySettings settings_;
  PreferencesStore preferences_;
  std::unique_ptr<CollectionScan> collectionScan_;
  std::unique_ptr<PreferencesSheet> preferencesSheet_;  // nullptr: there is no sheet
};

}  // namespace lumivane

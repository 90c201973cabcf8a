// What the controls of the preferences sheet do to the slideshow, and what they show of it.
//
// Threads: main only.
// Owns:    nothing but the knowledge that a rescan is due. The sheet tells this object until it is destroyed.
// Units:   as DisplaySettings says.
// Errors:  none; entries out of range are corrected silently (SheetRules.h).
//
// Most changes take effect at once. One that concerns the collection is left until the sheet is closed, which then
// stays open until the new collection is there.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "collection/albums/AlbumChoice.h"
#include "engine/Host.h"
#include "settings/ConfigureSheet.h"
#include "settings/OutsideLinks.h"

namespace lumivane {

class LumivaneView;

class PreferencesSheet final : public SheetActions {
 public:
  // Requires: the host has a sheet.
  PreferencesSheet(LumivaneView& view, const Host& host);
  PreferencesSheet(const PreferencesSheet&) = delete;
  PreferencesSheet& operator=(const PreferencesSheet&) = delete;
  ~PreferencesSheet() override;

  // --- For the window ---
  // Shows the sheet; `whenEnded` is called once, when it has gone.
  void beginSheet(std::function<void()> whenEnded);
  // As if the folder had been chosen in the dialog. With the sheet open, that shows it and waits to be closed; else
  // the scan begins.
  void folderDropped(const std::string& folder);
  // The same for a file: its folder is taken, once the disk has said which that is.
  void fileDropped(const std::string& path);

  // --- For the show: what there is to be seen has changed ---
  void fillDisplayChooser();
  void loadHelpDocument();
  void fillControls();
  void showNumImages(const std::string& count);
  void reloadAlbumTable();
  void scanStarted();
  void scanStopped();
  void scanFinished(const std::string& count);
  void collectionIsReady();  // until then, a sheet that is opened anew cannot be closed
  void albumIsGone();        // the chosen album is not there; folders are used again

  // --- SheetActions: numbers and texts ---
  void setDurationPerImage() override;
  void setInitZoomInfactor() override;
  void setExcludeSize() override;
  void setExcludekB() override;
  void setSkipPatterns() override;
  void textDidBeginEditing() override;
  void controlTextDidBeginEditing() override;
  void setFontSize() override;
  void setInfoDelay() override;

  // --- SheetActions: switches and sliders ---
  void setUseSpotlight() override;
  void setShowImagePath() override;
  void setDisplayFilename() override;
  void setShowFileExtension() override;
  void setShowImageInfo() override;
  void setZoomIsOn() override;
  void setKenBurnsIsOn() override;
  void dontRandomize() override;
  void startWithRandom() override;
  void allowBlackBorders() override;
  void newBlackBordersThreshold(float value) override;
  void setCrossDissolve() override;
  void newCrossDissolveDuration(float value) override;
  void setEnableDeleteAtRuntime() override;

  // --- SheetActions: display, folder, album, the sheet itself ---
  void changeScreen() override;
  void selectDirectory() override;
  void rescanDirectory() override;
  void setUseAlbum() override;
  void setUseDirectoryTree() override;
  void selectAlbum() override;
  void closeSheet() override;

  // --- SheetActions: what leads out of the sheet ---
  void showHelpSheet() override;
  void donateDonorbox() override;
  void feedback() override;
  void gotoHomepage() override;

 private:
  void needsRescan();
  void applyTypedFields();
  [[nodiscard]] bool changeFolder(const std::string& chosen);  // false: it is the folder in use, or none
  void startScan();
  void endSheet();
  void enableZoomParameters(bool enabled);
  void enableAlbumListControls(bool on);
  void fillNumbers();
  void fillSwitches();
  [[nodiscard]] AlbumChoice albumChoice() const;
  void take(const AlbumAction& action);
  void open(const OutsideLink& link);
  [[nodiscard]] std::int32_t wholeNumber(SheetControl control) const;
  void switchText(bool DisplaySettings::*field, SheetControl control);

  LumivaneView& view_;
  const Host& host_;
  ConfigureSheet& sheet_;
  bool rescan_ = false;  // the pictures need to be collected anew
  std::function<void()> whenEnded_;
  std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);  // for answers that come late
};

}  // namespace lumivane

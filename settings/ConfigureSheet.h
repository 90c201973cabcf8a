// The preferences sheet, as far as the slideshow has to know it: its controls by name, and what they tell.
//
// Threads: main only.
// Owns:    nothing of the slideshow's. The actions must outlive the sheet or be taken back with setActions(nullptr).
// Units:   numbers as the user types them; sliders as float, within what sliderRange() says.
// Errors:  none; a question that does not fit the control (is a text field on?) gets an empty answer.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lumivane {

enum class SheetControl {
  // Fields for numbers
  durationPerImageView_,
  initZoomInFactorView_,
  excludeSizeView_,
  excludekBView_,
  fontSizeView_,
  infoDelayView_,
  // Many lines of text
  skipPatternsView_,
  // Radio buttons, two pairs
  useSpotlightView_,
  useDirectorySearchView_,
  useAlbumView_,
  useDirectoryTreeView_,
  // Check boxes
  showImagePathView_,
  displayFilenameView_,
  showFileExtensionView_,
  showImageInfoView_,
  zoomIsOnView_,
  kenBurnsView_,
  dontRandomizeView_,  // labelled as randomize: on when the pictures come in random order
  startWithRandomView_,
  allowBlackBordersView_,  // labelled as avoid black borders: on when they are not allowed
  crossDissolveView_,
  enableDeleteView_,
  // Sliders
  blackBordersThresholdSlider_,
  crossDissolveDurationSlider_,
  // Choices: a pop-up list and a table
  currentScreenView_,
  albumView_,
  // Buttons
  applyView_,
  changeDirectoryView_,
  rescanDirectoryView_,
  // Shown only
  directoryPathView_,
  num_images_,
  version_label_,
  initZoomInFactorLabelView_,
  excludekBLabelView_,
  skipPatternsLabelView_,
};

struct SliderRange {
  float minimum = 0;
  float maximum = 1;
};

// The seconds that a cross-fade can be set to; also the range where there is no sheet to ask.
inline constexpr SliderRange kCrossDissolveDurationRange{0.5F, 10};

// What the user did, one operation for each control. Most read their control themselves.
class SheetActions {
 public:
  virtual ~SheetActions() = default;
  virtual void setDurationPerImage() = 0;
  virtual void setInitZoomInfactor() = 0;
  virtual void setExcludeSize() = 0;
  virtual void setExcludekB() = 0;
  virtual void setSkipPatterns() = 0;
  virtual void textDidBeginEditing() = 0;         // in the skip patterns
  virtual void controlTextDidBeginEditing() = 0;  // in a field for a number
  virtual void setFontSize() = 0;
  virtual void setInfoDelay() = 0;
  virtual void setUseSpotlight() = 0;
  virtual void setShowImagePath() = 0;
  virtual void setDisplayFilename() = 0;
  virtual void setShowFileExtension() = 0;
  virtual void setShowImageInfo() = 0;
  virtual void setZoomIsOn() = 0;
  virtual void setKenBurnsIsOn() = 0;
  virtual void dontRandomize() = 0;
  virtual void startWithRandom() = 0;
  virtual void allowBlackBorders() = 0;
  virtual void newBlackBordersThreshold(float value) = 0;
  virtual void setCrossDissolve() = 0;
  virtual void newCrossDissolveDuration(float value) = 0;
  virtual void setEnableDeleteAtRuntime() = 0;
  virtual void changeScreen() = 0;
  virtual void selectDirectory() = 0;
  virtual void rescanDirectory() = 0;
  virtual void setUseAlbum() = 0;
  virtual void setUseDirectoryTree() = 0;
  virtual void selectAlbum() = 0;
  virtual void showHelpSheet() = 0;
  virtual void donateDonorbox() = 0;
  virtual void feedback() = 0;
  virtual void gotoHomepage() = 0;
  virtual void closeSheet() = 0;
};

class ConfigureSheet {
 public:
  virtual ~ConfigureSheet() = default;

  // Whom the controls tell; nullptr = nobody. Filling a control by program tells nobody.
  virtual void setActions(SheetActions* actions) = 0;

  // The text of a field, of the skip patterns or of a label.
  [[nodiscard]] virtual std::string text(SheetControl control) const = 0;
  virtual void setText(SheetControl control, const std::string& text) = 0;

  // Check boxes and radio buttons.
  [[nodiscard]] virtual bool isOn(SheetControl control) const = 0;
  virtual void setOn(SheetControl control, bool on) = 0;

  // Sliders.
  [[nodiscard]] virtual SliderRange sliderRange(SheetControl control) const = 0;
  virtual void setSlider(SheetControl control, float value) = 0;

  // The pop-up list and the table: their rows, and the one that is chosen (nullopt = none).
  virtual void setItems(SheetControl control, const std::vector<std::string>& items) = 0;
  virtual void selectItem(SheetControl control, std::optional<std::size_t> row) = 0;
  [[nodiscard]] virtual std::optional<std::size_t> selectedItem(SheetControl control) const = 0;

  // A control that is disabled takes no input; a label or a text takes the colour of disabled text.
  virtual void setEnabled(SheetControl control, bool enabled) = 0;

  // The indicator that something goes on whose end is not known.
  virtual void setProgressSpinning(bool spinning) = 0;

  // Shows the sheet over the slideshow's window; brings it to the front where it is shown already.
  virtual void begin() = 0;
  virtual void end() = 0;
  [[nodiscard]] virtual bool isShown() const = 0;
};

}  // namespace lumivane

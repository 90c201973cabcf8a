// The keys that steer the show. What a key does to this view it leaves for the views of all other displays as well.
#include "engine/LumivaneView.h"

namespace lumivane {
namespace {

constexpr const char* kInfoComesLater = "... info will be provided with next image, if available ...";

}  // namespace

void LumivaneView::keyDown(const KeyEvent& event) {
  if (actOnKey(event)) forwardToOtherDisplays(event);
}

bool LumivaneView::actOnKey(const KeyEvent& event) {
  switch (event.character) {
    case kReturnCharacter:
      revealShownFiles();
      return false;
    case kUpArrowCharacter:
    case kLeftArrowCharacter:
      stepBack();
      return true;
    case kDownArrowCharacter:
    case kRightArrowCharacter:
      stepForward();
      return true;
    case U' ':
      paused_ = !paused_;
      refreshTextLayer();
      return true;
    case U'h':
      help_layer_->edit([](LayerProperties& p) { p.hidden = !p.hidden; });
      return true;
    case U'i':
      muteTextDisplay_ = !muteTextDisplay_;
      rewriteInformationLine();
      return true;
    case U'b':
      toggleBlankScreen();
      return true;
    case U'z':
      return togglePauseZooming();
    case kDeleteCharacter:
      return deleteShownImage();
    case U'f':
      if (window_ != nullptr) window_->toggleFullScreen();
      startNewCycle();
      return true;
    case kEscapeCharacter:
      return leaveFullScreen();
    default:
      if (standsInForScreenSaver()) host_.application.terminate();
      return true;
  }
}

// A screen saver ends at the touch of any modifier key; the Super key alone is spared, for the user may be on the way
// to one of the desktop's own shortcuts.
void LumivaneView::flagsChanged(Modifiers held) {
  if ((held & kMetaModifier) == 0 && standsInForScreenSaver()) host_.application.terminate();
}

bool LumivaneView::standsInForScreenSaver() const {
  return screensaver_surrogate_mode_ && window_ != nullptr && window_->isFullScreen();
}

void LumivaneView::forwardToOtherDisplays(const KeyEvent& event) {
  for (const DisplayNumber display : allScreenIDs_) {
    if (display != displayID_) host_.tables.pendingKeyEventsByDisplay[display] = event;
  }
}

// One key shows the pictures of all displays, each in a window of the file browser.
void LumivaneView::revealShownFiles() {
  for (const DisplayNumber display : allScreenIDs_) {
    const auto shown = host_.tables.shownFileByDisplay.find(display);
    if (shown != host_.tables.shownFileByDisplay.end()) host_.fileBrowser.selectFile(shown->second);
  }
}

bool LumivaneView::leaveFullScreen() {
  if (standsInForScreenSaver()) {
    host_.application.terminate();
    return false;
  }
  if (window_ != nullptr && window_->isFullScreen()) {
    window_->toggleFullScreen();
    startNewCycle();
  }
  return true;
}

// With nothing to step back to this simply moves on to the next picture.
void LumivaneView::stepBack() {
  if (history_.stepBack()) displayImageFromHistory_ = true;
  askForOtherPicture();
}

void LumivaneView::stepForward() {
  displayImageFromHistory_ = history_.stepForward();
  askForOtherPicture();
}

void LumivaneView::rewriteInformationLine() {
  if (settings_.showImageInfo_) {
    printFilename(filename_, kInfoComesLater);
  } else {
    printFilename(filename_);
  }
  refreshTextLayer();
}

void LumivaneView::toggleBlankScreen() {
  blankScreen_ = !blankScreen_;
  if (pauseZooming_) resumeAnimation();
  const auto hide = [this](LayerProperties& p) { p.hidden = blankScreen_; };
  if (formerLayer_ != nullptr) formerLayer_->edit(hide);
  currentLayer_->edit(hide);
  rewriteInformationLine();
}

// Without a motion there is nothing to freeze. The freezing itself is the frame loop's.
bool LumivaneView::togglePauseZooming() {
  if (!settings_.zoomIsOn_ && !settings_.kenBurnsIsOn_) return false;
  pauseZooming_ = !pauseZooming_;
  refreshTextLayer();
  if (!pauseZooming_) resumeAnimation();
  return true;
}

}  // namespace lumivane

#include "app/MasterViewController.h"

#include "engine/PreferencesSheet.h"

namespace lumivane {

MasterViewController::MasterViewController(const Host& host) : host_(host) {}

void MasterViewController::viewDidLoad(RectPt frame) {
  saver_ = LumivaneView::initWithFrame(frame, false, host_);
  heartbeat_.emplace(
      host_.mainLoop, host_.clock, [this] { return saver_->nextFrameWanted(); },
      [this] { saver_->animateOneFrame(); });
}

void MasterViewController::viewWillDisappear() {
  heartbeat_.reset();
}

void MasterViewController::turnEnded() {
  if (heartbeat_) heartbeat_->turnEnded();
}

void MasterViewController::viewWillMoveToWindow(HostWindow* window) {
  saver_->viewWillMoveToWindow(window);
}

void MasterViewController::keyDown(const KeyEvent& event) {
  saver_->keyDown(event);
}

void MasterViewController::flagsChanged(Modifiers held) {
  saver_->flagsChanged(held);
}

void MasterViewController::mouseMoved() {
  host_.application.terminate();
}

void MasterViewController::showPreferences() {
  if (saver_->preferencesSheet() == nullptr) return;
  saver_->preferencesSheet()->beginSheet(
      [&log = host_.log] { log.information("showPreferences completionHandler called"); });
}

void MasterViewController::showHelp() {
  if (host_.helpPanel != nullptr) host_.helpPanel->orderFront();
}

}  // namespace lumivane

// Makes the slideshow's view, drives it up to 50 times a second and hands it the keys.
//
// Threads: main only.
// Owns:    the view and its timer.
// Units:   points; seconds.
// Errors:  none.
#pragma once

#include <memory>
#include <optional>

#include "app/Heartbeat.h"
#include "engine/Host.h"
#include "engine/LumivaneView.h"

namespace lumivane {

class MasterViewController {
 public:
  explicit MasterViewController(const Host& host);

  // Makes the view for a window of this frame and starts its heartbeat.
  void viewDidLoad(RectPt frame);
  // Ends the heartbeat for good.
  void viewWillDisappear();
  // At the end of each turn of the main loop: what it did may have brought the next frame forward.
  void turnEnded();
  void viewWillMoveToWindow(HostWindow* window);
  void keyDown(const KeyEvent& event);
  void flagsChanged(Modifiers held);
  // Told only while the show stands in for the screen saver, which ends when the mouse moves.
  void mouseMoved();
  void showPreferences();
  void showHelp();

  [[nodiscard]] LumivaneView& saver() { return *saver_; }
  [[nodiscard]] const LumivaneView& saver() const { return *saver_; }

 private:
  const Host host_;
  std::unique_ptr<LumivaneView> saver_;
  std::optional<Heartbeat> heartbeat_;  // ends before the view that it drives
};

}  // namespace lumivane

// The application around the slideshow: starts it in its window, forwards the window's life to it, ends it.
//
// Threads: main only.
// Owns:    the window, the thread that draws into it, the controller of the view.
// Units:   points.
// Errors:  logged; only without a way to draw does the program not start.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/FirstFrame.h"
#include "app/LaunchFlags.h"
#include "app/LauncherFiles.h"
#include "app/LayerTreeCommit.h"
#include "app/MainMenu.h"
#include "app/MasterViewController.h"
#include "app/PointerHiding.h"
#include "app/WindowPlace.h"
#include "compositor/render/RenderThread.h"
#include "platform/KeepAwake.h"
#include "platform/Result.h"
#include "platform/SleepNotes.h"
#include "platform/Window.h"
#include "platform/linux/QtGlSurface.h"
#include "platform/linux/QtMainLoop.h"
#include "platform/linux/SlideshowWindow.h"

namespace lumivane {

class AppDelegate final : public WindowListener {
 public:
  // `frames` (may be nullptr) is told of every frame until this is destroyed.
  AppDelegate(const Host& host, QtMainLoop& mainLoop, SleepNotes& sleepNotes, KeepAwake& keepAwake,
              FrameWatcher* frames = nullptr);
  ~AppDelegate() override;

  // All arguments of the process, the program's own path included.
  void applicationWillFinishLaunching(const std::vector<std::string>& arguments);
  // Opens the window and starts the show; fails when there is nothing to draw with.
  [[nodiscard]] Result<Done> applicationDidFinishLaunching();

  void applicationWillTerminate();
  // The window has gone with its display server: saves what can be saved without one.
  void displayLost();

  // WindowListener
  void windowResized(SizePt content) override;
  void windowLiveResizeEnded() override;
  void windowExposed(bool exposed) override;
  void windowMinimized(bool minimized) override;
  void windowDisplayChanged(DisplayNumber display) override;
  void windowScaleChanged(double scale) override;
  void windowWillClose() override;
  void keyDown(const KeyEvent& event) override;
  void modifiersChanged(Modifiers held) override;
  void mouseMoved(PointPt position) override;
  void menuRequested(PointPt position) override;
  void fileDropped(const std::string& path) override;

  // The slideshow's window, for what opens over it; nullptr before the start.
  [[nodiscard]] SlideshowWindow* window() { return window_.get(); }

 private:
  void openWindow(const QSurfaceFormat& format);
  Result<Done> startDrawing(const std::vector<QSurfaceFormat>& formats);
  void startSurrogateMode();
  void endOfTurn();
  [[nodiscard]] bool isWatched() const;
  void perform(MenuCommand command);
  void helpTheFirstStart();
  void rememberPlace();
  void moveToDisplay(DisplayNumber display);
  void setAnimating(bool animating);
  void stopAnimatingUnlessSeenAgain();

  const Host host_;
  QtMainLoop& mainLoop_;
  SleepNotes& sleepNotes_;
  KeepAwake& keepAwake_;
  FrameWatcher* const frames_;
  LauncherFiles launcher_;
  WindowPlace place_;
  LaunchFlags flags_;
  MasterViewController masterViewController_;
  std::unique_ptr<SlideshowWindow> window_;
  std::unique_ptr<QtGlSurface> surface_;
  std::unique_ptr<FirstFrame> firstFrame_;
  std::unique_ptr<RenderThread> renderThread_;  // ends before the surface and the window
  std::unique_ptr<LayerTreeCommit> commit_;
  std::unique_ptr<PointerHiding> pointer_;
  std::unique_ptr<MainMenu> menu_;
  std::optional<RectPt> ordinaryFrame_;  // the window's, when it last was neither maximized nor full screen
  DisplayNumber display_ = 0;
  bool animating_ = true;
  // Dropped when the window is seen again before the show was stopped.
  std::shared_ptr<const bool> unseen_;
};

}  // namespace lumivane

// The slideshow's window: one top-level surface for OpenGL, on X11 and Wayland.
//
// Threads: main only, but surfaceState().
// Owns:    the native window, from the first show() until it is closed.
// Units:   as in platform/Window.h.
// Errors:  none.
#pragma once

#include <QRect>
#include <QSurfaceFormat>
#include <memory>

#include "platform/Window.h"
#include "platform/linux/ScreenLoss.h"
#include "platform/linux/WindowSurfaceState.h"

class QWindow;

namespace lumivane {

class SlideshowWindow final : public HostWindow {
 public:
  // The format is that of the context that will draw (QtGlContext.h). The listener must outlive the window.
  SlideshowWindow(const QSurfaceFormat& format, WindowListener& listener);
  ~SlideshowWindow() override;
  SlideshowWindow(const SlideshowWindow&) = delete;
  SlideshowWindow& operator=(const SlideshowWindow&) = delete;

  [[nodiscard]] RectPt frame() const override;
  [[nodiscard]] DisplayNumber displayNumber() const override;
  [[nodiscard]] double scale() const override;
  [[nodiscard]] bool isFullScreen() const override;
  [[nodiscard]] bool isMaximized() const override;
  [[nodiscard]] bool isMinimized() const override;
  [[nodiscard]] bool isExposed() const override;
  void show() override;
  void toggleFullScreen() override;
  void close() override;
  void setTitle(std::string_view utf8) override;
  void setCursorHidden(bool hidden) override;
  void setReportsMouseMoves(bool reports) override;

  // Where the window opens and where it returns to from full screen. Without this: three quarters of the primary
  // display, in its middle. A frame that would lie on no display is moved onto one; Wayland takes the size only.
  void placeAt(const RectPt& frame);
  // That of the GL context which is to draw. Requires: the window was not shown yet.
  void setFormat(const QSurfaceFormat& format);

  // For dialogs and menus that belong to the window, and for the surface that is drawn to.
  [[nodiscard]] QWindow& qtWindow();
  [[nodiscard]] const WindowSurfaceState& surfaceState() const;

 private:
  void standOnADisplay(bool fullScreen);

  class NativeWindow;
  std::unique_ptr<NativeWindow> native_;
  ScreenLoss screenLoss_;
  QRect frameBeforeFullScreen_;
};

}  // namespace lumivane

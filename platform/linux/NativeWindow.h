// The QWindow behind SlideshowWindow: turns Qt's events into calls on the listener.
//
// Threads: main only, but surfaceState().
// Owns:    the native window.
// Errors:  none.
#pragma once

#include <QTimer>
#include <QWindow>

#include "platform/Window.h"
#include "platform/linux/RestingMouse.h"
#include "platform/linux/SlideshowWindow.h"
#include "platform/linux/WindowSurfaceState.h"

class QDropEvent;

namespace lumivane {

class SlideshowWindow::NativeWindow final : public QWindow {
 public:
  NativeWindow(const QSurfaceFormat& format, WindowListener& listener);
  ~NativeWindow() override;

  [[nodiscard]] const WindowSurfaceState& surfaceState() const { return surfaceState_; }
  void setReportsMouseMoves(bool reports);

 protected:
  bool event(QEvent* event) override;
  void exposeEvent(QExposeEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void considerDrop(QDropEvent& event);
  void takeDrop(QDropEvent& event);
  void closing();
  void surfaceComesOrGoes(bool there);
  void statesChanged(Qt::WindowStates states);
  void watchRefreshRateOf(QScreen* screen);
  void noteSurface();
  void setShown(bool shown);
  [[nodiscard]] PointPt contentPoint(QPointF position) const;

  WindowListener& listener_;
  WindowSurfaceState surfaceState_;
  QTimer resizeQuiet_;  // runs out when the size has been at rest for a while
  RestingMouse mouse_;
  Qt::WindowStates states_;  // as the listener knows them
  double scale_ = 0;         // as the listener knows it; 0 = not yet
  bool shown_ = false;       // as the listener knows it
  bool reportsMouseMoves_ = false;
  bool closeTold_ = false;
  QMetaObject::Connection refreshRateChanges_;
};

}  // namespace lumivane

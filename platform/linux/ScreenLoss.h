// Tells a window that the screen it stood on is gone.
//
// Threads: main only.
// Owns:    the watch; nothing is told after its end. The window outlives it.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

class QScreen;
class QWindow;

namespace lumivane {

class ScreenLoss final : public QObject {
 public:
  // Called when Qt and the window manager have had the time to put the window elsewhere. Both may have taken it out of
  // full screen by then: `wasFullScreen` says how it stood before.
  using Lost = std::function<void(bool wasFullScreen)>;

  ScreenLoss(const QWindow& window, Lost lost);

 private:
  void removed(const QScreen* screen);

  const QWindow& window_;
  const Lost lost_;
  bool wasFullScreen_ = false;
  QTimer settled_;
};

}  // namespace lumivane

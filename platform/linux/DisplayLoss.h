// Ends the program in order when its connection to the display server breaks. Left to themselves Qt and Xlib end it on
// the spot, from whatever thread notices first.
//
// Threads: constructed and destroyed on the main thread, which also runs onLoss; one object at a time.
// Owns:    Qt's message handler and Xlib's for that case, from construction to destruction.
// Errors:  none. A server that stops answering without closing its connection is not noticed.
#pragma once

#include <functional>

namespace lumivane {

class DisplayLoss {
 public:
  static constexpr int kExitStatus = 1;

  // onLoss may touch files, but neither windows nor OpenGL; when it has returned, the process ends at once.
  explicit DisplayLoss(std::function<void()> onLoss);
  ~DisplayLoss();
  // Whether somebody has noticed. From any thread: who draws must stop, since EGL on Wayland uses what the connection
  // took with it.
  [[nodiscard]] static bool noticed();
  DisplayLoss(const DisplayLoss&) = delete;
  DisplayLoss& operator=(const DisplayLoss&) = delete;
};

}  // namespace lumivane

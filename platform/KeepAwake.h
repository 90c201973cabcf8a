// Keeps the screens from going dark while somebody watches.
//
// Threads: main only; the call returns at once.
// Errors:  logged; the screens then go dark when the desktop wants them to.
#pragma once

namespace lumivane {

class KeepAwake {
 public:
  virtual ~KeepAwake() = default;
  // Asking again for what is so already does nothing. The end of the program ends it as well.
  virtual void keepAwake(bool awake) = 0;
};

}  // namespace lumivane

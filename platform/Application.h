// The running program, as far as the slideshow steers it.
//
// Threads: main only.
// Errors:  none.
#pragma once

namespace lumivane {

class Application {
 public:
  virtual ~Application() = default;
  // Ends the program as closing its window does. Returns at once; the program ends when the main loop comes to it.
  virtual void terminate() = 0;
};

}  // namespace lumivane

// The short sounds that the desktop's sound theme has for events.
//
// Threads: main only; play() never waits for the sound system.
// Errors:  told to onFailure on the main loop: no such sound, or nothing to play it on.
#pragma once

#include <functional>
#include <string>

namespace lumivane {

enum class Sound {
  Funk,         // something could not be done
  DragToTrash,  // a file went to the trash
};

class Sounds {
 public:
  using OnFailure = std::function<void(const std::string& reason)>;

  virtual ~Sounds() = default;
  // Starts the sound and returns. onFailure may be empty, and may come after the asker is gone.
  virtual void play(Sound sound, OnFailure onFailure) = 0;
};

}  // namespace lumivane

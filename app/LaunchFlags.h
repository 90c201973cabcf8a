// How the program was asked to start.
//
// Threads: any; pure.
// Errors:  unknown words are handed back, to be logged.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lumivane {

struct LaunchFlags {
  bool fullScreen = false;
  bool surrogate = false;  // stands in for the screen saver
  std::vector<std::string> unknown;

  // Takes one word: "-f" (full screen), "-s" (full screen, as a screen saver). What words ask for adds up.
  void add(std::string_view word);
};

}  // namespace lumivane

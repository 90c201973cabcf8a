// How the program was asked to start.
//
// Threads: any; pure.
// Errors:  words that are no flags are told, and change nothing.
#pragma once

#include <string_view>

namespace lumivane {

struct LaunchFlags {
  bool fullScreen = false;
  bool surrogate = false;  // stands in for the screen saver

  // Takes one word: "-f" (full screen), "-s" (full screen, as a screen saver). What words ask for adds up.
  // False for any other word.
  [[nodiscard]] bool add(std::string_view word);
};

}  // namespace lumivane

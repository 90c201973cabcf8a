#include "app/LaunchFlags.h"

namespace lumivane {

bool LaunchFlags::add(std::string_view word) {
  if (word == "-f") {
    fullScreen = true;
  } else if (word == "-s") {
    fullScreen = true;
    surrogate = true;
  } else {
    return false;
  }
  return true;
}

}  // namespace lumivane

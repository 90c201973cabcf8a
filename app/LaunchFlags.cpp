#include "app/LaunchFlags.h"

namespace lumivane {

void LaunchFlags::add(std::string_view word) {
  if (word == "-f") {
    fullScreen = true;
  } else if (word == "-s") {
    fullScreen = true;
    surrogate = true;
  } else {
    unknown.emplace_back(word);
  }
}

}  // namespace lumivane

// The user's trash: a file in it can be had back.
//
// Threads: any one at a time.
// Errors:  the reason in the desktop's words; the file is then still where it was. Where a file system has no
//          trash, moving there fails: nothing is ever deleted for good.
#pragma once

#include <string>

#include "platform/Result.h"

namespace lumivane {

class Trash {
 public:
  virtual ~Trash() = default;
  // The path may hold any bytes. A symbolic link is moved itself, not what it points to.
  [[nodiscard]] virtual Result<Done> trashItem(const std::string& path) = 0;
};

}  // namespace lumivane

// Why a file is not among the pictures of a collection, for whoever asks.
//
// Threads: the call is made on the thread that looks at the file, one at a time.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lumivane {

enum class LeftOut {
  Hidden,      // a file or a whole folder whose name begins with a dot
  Link,        // a symbolic link that is not followed
  NoFile,      // a pipe, a socket, a device; or gone meanwhile
  Type,        // no picture by its name
  FileSize,    // not larger than the smallest file wanted
  PixelSize,   // a side is not longer than the shortest wanted
  NoPicture,   // its content is no picture that can be shown
  Unreadable,  // it cannot be opened
  Name,        // the list of pictures cannot hold its path
  SkipPattern,
  NotInIndex,  // it fits, but the index that was asked does not know it
};

using TellLeftOut = std::function<void(const std::string& path, LeftOut rule)>;

// A few words for the rule, in lower case.
[[nodiscard]] std::string_view ruleText(LeftOut rule);

}  // namespace lumivane

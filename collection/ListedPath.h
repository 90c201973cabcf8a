// What the list of pictures can hold.
//
// Threads: any; pure functions.
// Errors:  none.
#pragma once

#include <string>
#include <string_view>

namespace lumivane {

// Whether a path, or a part of one, can stand in the list, which is UTF-8 text with a line for each path.
[[nodiscard]] bool fitsInList(std::string_view bytes);

// Empty, or why a file's whole path cannot be a picture's, as the beginning of a line for the log.
[[nodiscard]] std::string_view problemOfListedPath(std::string_view folderPath, std::string_view name);

}  // namespace lumivane

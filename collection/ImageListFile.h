// Keeps the list of pictures of a display between two starts, so that none begins with a scan.
//
// Threads: any, one at a time for a file.
// Format:  UTF-8 text, a path a line, line feeds between the lines and none after the last; an empty list is an
//          empty file. The file's name ends in ".plist" for all that.
// Errors:  logged; a list that cannot be read is empty, one that cannot be written leaves the old file as it was.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "collection/ImageList.h"
#include "platform/Files.h"
#include "platform/Log.h"

namespace lumivane {

// Room for some ten million pictures.
inline constexpr std::size_t kLargestImageListBytes = std::size_t{1} << 30;

// The file's name for a display, whose name is given as a safe part of a file name.
[[nodiscard]] std::string imageListFileName(std::string_view displayFileName);

// The list as it was saved. A file that is missing, not UTF-8, or begins with an empty line gives an empty list;
// empty lines further down are entries.
[[nodiscard]] ImageList loadImageList(const Files& files, const std::string& imageListPath, Log& log);

// Writes the list in place of the old one. A path that the format cannot hold (a line feed, bytes that are not
// UTF-8) is left out and logged: it would ruin the whole list. An empty imageListPath says that there is none yet;
// the failure is logged.
void saveImageList(Files& files, const std::string& imageListPath, const ImageList& imagefiles, Log& log);

}  // namespace lumivane

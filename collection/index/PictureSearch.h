// Searches a folder tree for pictures: asks one index after the other whether it answers, and the files themselves for
// what the index does not know of them.
//
// Threads: blocks; on a background thread. Several searches may run at once.
// Units:   as in MetadataQuery.h.
// Errors:  logged; a search that breaks off ends with what it has found.
#pragma once

#include <functional>
#include <stop_token>
#include <string>
#include <vector>

#include "collection/LeftOut.h"
#include "platform/FileIndex.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/PictureDimensions.h"

namespace lumivane {

// What a search works with; all of it outlives the search.
struct PictureSources {
  std::vector<FileIndex*> indices;  // in the order in which they are asked
  PictureDimensions& dimensions;
  Files& files;
  std::string cachePath;  // of measured sizes; empty: nothing is kept
  Log& log;
  TellLeftOut tellLeftOut{};  // absent: nobody asks; called on the searching thread
};

using FoundPicture = std::function<void(std::string path)>;

// Tells of each picture that the predicate fits, on the calling thread, in any order.
void searchPictures(const PictureSources& sources, const PicturePredicate& predicate,
                    const FoundPicture& found, const std::stop_token& stop);

}  // namespace lumivane

// A row of an index's answer, checked: the index belongs to another program, and what it holds may be stale or forged.
//
// Threads: any; a pure function.
// Units:   bytes, pixels.
// Errors:  a row that cannot be of a picture below the folder is absent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/FileIndex.h"

namespace lumivane {

struct IndexRow {
  std::string uri;
  std::int64_t bytes = 0;
  std::int64_t width = 0;  // of the picture; 0: the index does not know
  std::int64_t height = 0;
};

// Left out is what is no file of this machine, does not lie below the folder, is hidden, or cannot be kept in a list
// of paths. Sides that no picture has count as not known.
// Requires: a folder without a slash at its end; empty for "/".
[[nodiscard]] std::optional<IndexedFile> checkedRow(const IndexRow& row, const std::string& folder);

}  // namespace lumivane

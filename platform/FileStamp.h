// What tells a file from the one that stood at the same path before.
//
// Threads: values; stampOf() is a pure function.
// Units:   bytes; nanoseconds since 1970.
// Errors:  none.
#pragma once

#include <cstdint>

struct stat;

namespace lumivane {

struct FileStamp {
  std::uint64_t bytes = 0;
  std::int64_t modified = 0;
  bool operator==(const FileStamp&) const = default;
};

[[nodiscard]] FileStamp stampOf(const struct stat& status);

}  // namespace lumivane

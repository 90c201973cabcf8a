#include "platform/FileStamp.h"

#include <sys/stat.h>

namespace lumivane {

FileStamp stampOf(const struct stat& status) {
  constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
  // Times before 1677 and after 2262 wrap around, and are still told apart.
  const auto seconds = static_cast<std::uint64_t>(status.st_mtim.tv_sec);
  const std::uint64_t modified =
      seconds * kNanosecondsPerSecond + static_cast<std::uint64_t>(status.st_mtim.tv_nsec);
  return {static_cast<std::uint64_t>(status.st_size), static_cast<std::int64_t>(modified)};
}

}  // namespace lumivane

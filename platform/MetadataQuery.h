// A search for pictures in the desktop's index of file metadata.
//
// Threads: main only. No call waits for the index.
// Owns:    the search that was started last and its results, until stop() or the next start().
// Units:   sizes in bytes, sides in pixels.
// Errors:  a search that fails ends without results, and says why in the log.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace lumivane {

// Pictures of this kind are found; all limits are strict.
struct PicturePredicate {
  std::string folder;                  // with everything below it; links are not followed
  std::uint32_t largerThanBytes = 0;   // the file
  std::uint32_t largerThanPixels = 0;  // both sides of the picture
  bool operator==(const PicturePredicate&) const = default;
};

class MetadataQuery {
 public:
  virtual ~MetadataQuery() = default;

  // Begins a search. A search that still runs is given up.
  virtual void start(const PicturePredicate& predicate) = 0;
  // Whether the index is still finding pictures for the first time.
  [[nodiscard]] virtual bool isGathering() const = 0;
  // From here on the results stay as they are, whatever is added to the folders.
  virtual void disableUpdates() = 0;
  [[nodiscard]] virtual std::size_t resultCount() const = 0;
  // The full path of a result, in the index's order. Requires: result < resultCount().
  [[nodiscard]] virtual std::string path(std::size_t result) const = 0;
  // Ends the search and drops its results.
  virtual void stop() = 0;
};

}  // namespace lumivane

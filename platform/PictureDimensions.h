// Reads from picture files how large their pictures are, and nothing else of them.
//
// Threads: any; several batches at once.
// Units:   pixels as stored, before any turn.
// Errors:  told file by file; nothing is thrown.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"

namespace lumivane {

// The size of a file that could be read and holds no picture that is ever shown.
inline constexpr SizePx kNoPicture{0, 0};

class PictureDimensions {
 public:
  virtual ~PictureDimensions() = default;

  // One answer for each path, in their order: the size of the first picture in the file, kNoPicture, or nothing for
  // a file that could not be opened now (gone, no permission), which says nothing of the picture.
  [[nodiscard]] virtual std::vector<std::optional<SizePx>> measure(const std::vector<std::string>& paths) = 0;
};

}  // namespace lumivane

// Tells a mouse that is moved from one that merely lies under a window that appears, grows or goes full screen.
//
// Threads: main only.
// Units:   any, as long as they are the same ones throughout.
// Errors:  none.
#pragma once

#include <optional>

#include "platform/Geometry.h"

namespace lumivane {

class RestingMouse {
 public:
  // Whether the mouse has moved since the last report. The first report only says where it rests.
  [[nodiscard]] bool movedTo(PointPt position) {
    const bool moved = resting_ && *resting_ != position;
    resting_ = position;
    return moved;
  }

  // The window itself has changed: the next report only says where the mouse rests.
  void forget() { resting_.reset(); }

 private:
  std::optional<PointPt> resting_;
};

}  // namespace lumivane

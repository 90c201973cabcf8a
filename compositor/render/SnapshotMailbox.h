// Hands the newest layer tree from the main thread to the render thread; older unread ones are dropped.
//
// Threads: publish(), setExposed(), stop() from any; wait(), frameOver() render only.
// Owns:    at most one unread snapshot.
// Units:   waits in nanoseconds.
// Errors:  none.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

#include "compositor/model/LayerSnapshot.h"
#include "platform/Clock.h"

namespace lumivane {

class SnapshotMailbox {
 public:
  // What the render thread finds when it looks.
  struct News {
    std::shared_ptr<const FrameSnapshot> snapshot;  // nullptr: no newer one than last time
    bool exposed = false;
    bool redraw = false;  // exposed anew: what was drawn may be lost
    bool stopped = false;
  };

  void publish(std::shared_ptr<const FrameSnapshot> snapshot);

  // With false, returns only when no frame is being drawn, and none is begun before it is called with true.
  void setExposed(bool exposed);
  void stop();

  // Waits for a snapshot, a change of exposure, or the stop; at most as long as `longest` (absent: without end).
  // While not exposed, waits for exposure or stop only. When the news says that the surface is exposed, a frame
  // counts as being drawn until frameOver().
  [[nodiscard]] News wait(std::optional<Nanoseconds> longest);

  // Waits out the time before the next frame; ends early only for a change of exposure or the stop.
  void pause(Nanoseconds time);

  void frameOver();

 private:
  [[nodiscard]] bool hasNews() const;

  std::mutex mutex_;
  std::condition_variable wake_;  // to the render thread
  std::condition_variable over_;  // to setExposed(false)

  // Guarded by mutex_.
  std::shared_ptr<const FrameSnapshot> unread_;
  bool exposed_ = false;
  bool redraw_ = false;
  bool stopped_ = false;
  bool drawing_ = false;
};

}  // namespace lumivane

// What the render thread does, frame by frame: one object made and used on that thread.
//
// Threads: render only.
// Owns:    the painter, and with it every GL object; the newest snapshot. A frame like the one before allocates nothing.
// Units:   media time of the given clock.
// Errors:  GL failures are logged once and leave the last frame standing; no exception leaves run().
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "compositor/render/FramePacer.h"
#include "compositor/render/FrameWatcher.h"
#include "compositor/render/GlSurface.h"
#include "compositor/render/Painter.h"
#include "compositor/render/SnapshotMailbox.h"
#include "platform/Clock.h"
#include "platform/Log.h"

namespace lumivane {

class FrameLoop {
 public:
  FrameLoop(GlSurface& surface, const Clock& clock, Log& log, SnapshotMailbox& mailbox,
            PainterMaker makePainter, FrameWatcher* watcher = nullptr);

  // Returns when the mailbox is stopped, with all GL objects freed and the context given back.
  void run();

 private:
  // What is left to do after a turn.
  enum class Next {
    Sleep,   // until something comes
    Frame,   // something moves: at the pace of the display
    Upload,  // nothing moves, but textures are still to be sent: at once
    Retry,   // the surface cannot be drawn to just now
  };

  [[nodiscard]] SnapshotMailbox::News waitFor(Next next);
  [[nodiscard]] Next turn(const SnapshotMailbox::News& news);
  [[nodiscard]] Next drawFrame();
  [[nodiscard]] Next uploadOnly();
  void tell(ShownFrame frame);
  [[nodiscard]] UploadProgress upload(Nanoseconds budget);
  void closeDown();
  void logOnce(std::string_view failure);

  // Constant after construction.
  GlSurface& surface_;
  const Clock& clock_;
  Log& log_;
  SnapshotMailbox& mailbox_;
  PainterMaker makePainter_;
  FrameWatcher* watcher_;  // may be nullptr

  FramePacer pacer_;
  std::shared_ptr<const FrameSnapshot> snapshot_;
  DrawList list_;  // of the last frame; the next one uses its room
  std::unique_ptr<Painter> painter_;
  Nanoseconds longestUpload_{};          // since the last frame
  std::weak_ptr<const Bitmap> topmost_;  // the picture seen in the last frame
  bool contextMade_ = false;
  bool failureLogged_ = false;
  Next next_ = Next::Sleep;
};

}  // namespace lumivane

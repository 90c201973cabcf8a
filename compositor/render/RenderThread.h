// The thread that draws: takes the newest snapshot, evaluates it at the time at which the frame will be seen, draws
// it, and sleeps while nothing moves.
//
// Threads: made, published to and destroyed on the main thread; works on a thread of its own.
// Owns:    its thread, the textures and GL objects, and the surface's context while it runs.
// Units:   points and device pixels as in FrameSnapshot; media time of the given clock.
// Errors:  GL failures are logged once and leave the last frame standing; no exception leaves the thread.
#pragma once

#include <memory>
#include <stop_token>
#include <thread>

#include "compositor/model/LayerSnapshot.h"
#include "compositor/render/FrameWatcher.h"
#include "compositor/render/GlSurface.h"
#include "compositor/render/Painter.h"
#include "compositor/render/SnapshotMailbox.h"
#include "platform/Clock.h"
#include "platform/Log.h"

namespace lumivane {

class RenderThread {
 public:
  // The surface, the clock, the log and the watcher (may be nullptr) must outlive the thread. GL is first touched after
  // setExposed(true).
  RenderThread(GlSurface& surface, const Clock& clock, Log& log, FrameWatcher* watcher = nullptr);
  // The same with another painter in place of the renderer.
  RenderThread(GlSurface& surface, const Clock& clock, Log& log, PainterMaker makePainter,
               FrameWatcher* watcher = nullptr);
  // Stops and joins; the surface's context is free afterwards.
  ~RenderThread();
  RenderThread(const RenderThread&) = delete;
  RenderThread& operator=(const RenderThread&) = delete;

  // Hands over a tree to be drawn from now on. Cheap; older unread trees are dropped.
  void publish(std::shared_ptr<const FrameSnapshot> snapshot);

  // Whether the surface can be seen. With true, draws anew (also when it was exposed already: call it for every
  // expose event and after a change of size). With false, returns when the frame being drawn is over; the
  // surface's native window may then go away.
  void setExposed(bool exposed);

 private:
  void run(const std::stop_token& stop);

  // Constant after construction.
  GlSurface& surface_;
  const Clock& clock_;
  Log& log_;
  PainterMaker makePainter_;
  FrameWatcher* watcher_;

  SnapshotMailbox mailbox_;
  std::jthread thread_;  // last: ends before what it uses
};

}  // namespace lumivane

// What the render thread draws to: a window, or a target off the screen, with its own GL context.
//
// Threads: everything on the render thread, but construction and destruction. A window's implementation keeps
//          size, refresh interval and drawability where both threads may look (atomics or a lock).
// Owns:    the context (GL 3.3 core or ES 3.0, or later) and what it draws to.
// Units:   pixels; seconds.
// Errors:  makeCurrent() says false when there is no context or it is lost; it may be tried again later.
#pragma once

#include "platform/Clock.h"
#include "platform/Geometry.h"

namespace lumivane {

class GlSurface {
 public:
  virtual ~GlSurface() = default;

  // Makes the context current on the calling thread, creating it at the first call. Called before every frame.
  [[nodiscard]] virtual bool makeCurrent() = 0;

  // Whether, since this was asked last, the context was lost and makeCurrent() has made another in its place: all GL
  // objects of the former are gone.
  [[nodiscard]] virtual bool takeContextLoss() { return false; }

  // The render thread's last word: it has freed its GL objects and will not touch the surface again. The context
  // may then be moved to another thread or destroyed. Called only when makeCurrent() has succeeded before.
  virtual void doneCurrent() = 0;

  // Shows what was drawn. May block until the display takes it, or return at once.
  virtual void swapBuffers() = 0;

  // The size of what is drawn to; 0 x 0 while unknown.
  [[nodiscard]] virtual SizePx sizePx() const = 0;

  // The time between two pictures of the display, for instance 1/60 s.
  [[nodiscard]] virtual Seconds refreshInterval() const = 0;

  // Whether it can be drawn to now, apart from being exposed (RenderThread::setExposed).
  [[nodiscard]] virtual bool drawable() const = 0;
};

}  // namespace lumivane

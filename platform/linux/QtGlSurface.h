// The slideshow's window as what the render thread draws to.
//
// Threads: as in GlSurface.h; made and destroyed on the main thread.
// Owns:    the GL context, which is at home on the render thread between makeCurrent() and doneCurrent().
// Units:   as in GlSurface.h.
// Errors:  as in GlSurface.h.
#pragma once

#include <QOpenGLContext>
#include <memory>

#include "compositor/render/GlSurface.h"
#include "platform/linux/SlideshowWindow.h"

namespace lumivane {

class QtGlSurface final : public GlSurface {
 public:
  // The window must outlive the surface, and have the context's format.
  QtGlSurface(SlideshowWindow& window, std::unique_ptr<QOpenGLContext> context);

  [[nodiscard]] bool makeCurrent() override;
  [[nodiscard]] bool takeContextLoss() override;
  void doneCurrent() override;
  void swapBuffers() override;
  [[nodiscard]] SizePx sizePx() const override;
  [[nodiscard]] Seconds refreshInterval() const override;
  [[nodiscard]] bool drawable() const override;

 private:
  QWindow& window_;
  const WindowSurfaceState& state_;
  const std::unique_ptr<QOpenGLContext> context_;
  bool contextLost_ = false;  // the render thread's
};

}  // namespace lumivane

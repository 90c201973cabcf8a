#include "platform/linux/QtGlSurface.h"

#include <QThread>
#include <QWindow>
#include <utility>

#include "platform/linux/DisplayLoss.h"

namespace lumivane {

QtGlSurface::QtGlSurface(SlideshowWindow& window, std::unique_ptr<QOpenGLContext> context)
    : window_(window.qtWindow()), state_(window.surfaceState()), context_(std::move(context)) {
  // At home nowhere: only such an object can be fetched by another thread, and nobody else knows that thread's name.
  context_->moveToThread(nullptr);
}

bool QtGlSurface::makeCurrent() {
  if (!drawable()) return false;
  if (context_->thread() == nullptr) context_->moveToThread(QThread::currentThread());
  if (context_->makeCurrent(&window_)) return true;
  if (context_->isValid()) return false;
  // Lost, as after a reset of the graphics hardware. It takes a while until another one can be had.
  if (!context_->create()) return false;
  contextLost_ = true;
  return context_->makeCurrent(&window_);
}

bool QtGlSurface::takeContextLoss() {
  return std::exchange(contextLost_, false);
}

void QtGlSurface::doneCurrent() {
  context_->doneCurrent();
  context_->moveToThread(nullptr);
}

void QtGlSurface::swapBuffers() {
  if (drawable()) context_->swapBuffers(&window_);
}
SizePx QtGlSurface::sizePx() const {
  return state_.sizePx();
}
Seconds QtGlSurface::refreshInterval() const {
  return state_.refreshInterval();
}
bool QtGlSurface::drawable() const {
  return state_.drawable() && !DisplayLoss::noticed();
}

}  // namespace lumivane

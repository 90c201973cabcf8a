#include "compositor/render/RenderThread.h"

#include <exception>
#include <stop_token>
#include <string>
#include <utility>

#include "compositor/render/FrameLoop.h"
#include "compositor/render/Renderer.h"

namespace lumivane {

RenderThread::RenderThread(GlSurface& surface, const Clock& clock, Log& log, FrameWatcher* watcher)
    : RenderThread(
          surface, clock, log, [&clock] { return std::make_unique<Renderer>(clock); }, watcher) {}

RenderThread::RenderThread(GlSurface& surface, const Clock& clock, Log& log, PainterMaker makePainter,
                           FrameWatcher* watcher)
    : surface_(surface),
      clock_(clock),
      log_(log),
      makePainter_(std::move(makePainter)),
      watcher_(watcher),
      thread_([this](const std::stop_token& stop) { run(stop); }) {}

RenderThread::~RenderThread() = default;

void RenderThread::publish(std::shared_ptr<const FrameSnapshot> snapshot) {
  mailbox_.publish(std::move(snapshot));
}

void RenderThread::setExposed(bool exposed) {
  mailbox_.setExposed(exposed);
}

void RenderThread::run(const std::stop_token& stop) {
  const std::stop_callback wake(stop, [this] { mailbox_.stop(); });
  try {
    FrameLoop(surface_, clock_, log_, mailbox_, makePainter_, watcher_).run();
  } catch (const std::exception& failure) {
    log_.error("The render thread ended: " + std::string(failure.what()));
  } catch (...) {
    log_.error("The render thread ended for an unknown reason.");
  }
}

}  // namespace lumivane

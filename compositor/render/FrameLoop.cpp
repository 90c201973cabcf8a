#include "compositor/render/FrameLoop.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <string>
#include <utility>

#include "compositor/model/Evaluation.h"

namespace lumivane {
namespace {

using std::chrono::milliseconds;

// How long uploads may take in a frame while something moves: a quarter of a frame at 60 Hz.
constexpr Nanoseconds kUploadWhileMoving = milliseconds{4};
// And while nothing does: still short enough that a new snapshot is drawn without a noticeable wait.
constexpr Nanoseconds kUploadWhileStill = milliseconds{12};
constexpr Nanoseconds kRetryAfter = milliseconds{100};

// Tells setExposed(false) that the frame is over, however it ends.
class FrameEnd {
 public:
  explicit FrameEnd(SnapshotMailbox& mailbox) : mailbox_(mailbox) {}
  FrameEnd(const FrameEnd&) = delete;
  FrameEnd& operator=(const FrameEnd&) = delete;
  ~FrameEnd() { mailbox_.frameOver(); }

 private:
  SnapshotMailbox& mailbox_;
};

bool isEmpty(SizePx size) {
  return size.width <= 0 || size.height <= 0;
}

Nanoseconds intervalOf(const GlSurface& surface) {
  return wholeNanoseconds(surface.refreshInterval());
}

}  // namespace

FrameLoop::FrameLoop(GlSurface& surface, const Clock& clock, Log& log, SnapshotMailbox& mailbox,
                     PainterMaker makePainter, FrameWatcher* watcher)
    : surface_(surface),
      clock_(clock),
      log_(log),
      mailbox_(mailbox),
      makePainter_(std::move(makePainter)),
      watcher_(watcher),
      pacer_(intervalOf(surface)) {}

void FrameLoop::run() {
  for (;;) {
    const SnapshotMailbox::News news = waitFor(next_);
    if (news.stopped) break;
    if (!news.exposed) continue;
    const FrameEnd end(mailbox_);
    try {
      next_ = turn(news);
    } catch (const std::exception& failure) {
      logOnce(failure.what());
      // What cannot be set up is tried again only when there is something new to show: it takes long to fail.
      next_ = painter_ ? Next::Retry : Next::Sleep;
    }
  }
  closeDown();
}

SnapshotMailbox::News FrameLoop::waitFor(Next next) {
  switch (next) {
    case Next::Frame:
      mailbox_.pause(pacer_.waitBefore(clock_.now()));
      return mailbox_.wait(Nanoseconds{0});
    case Next::Upload:
      return mailbox_.wait(Nanoseconds{0});
    case Next::Retry:
      return mailbox_.wait(kRetryAfter);
    case Next::Sleep:
      break;
  }
  return mailbox_.wait(std::nullopt);
}

FrameLoop::Next FrameLoop::turn(const SnapshotMailbox::News& news) {
  if (news.snapshot) snapshot_ = news.snapshot;
  if (!snapshot_) return Next::Sleep;
  if (!surface_.drawable() || isEmpty(surface_.sizePx())) return Next::Retry;
  if (!surface_.makeCurrent()) {
    logOnce("the GL context of the window is not to be had");
    return Next::Retry;
  }
  contextMade_ = true;
  if (surface_.takeContextLoss() && painter_) {
    log_.error("The GL context was lost; everything is drawn anew.");
    painter_->abandon();
    painter_.reset();
  }
  if (!painter_) painter_ = makePainter_();
  const bool uploadsOnly = next_ == Next::Upload && !news.snapshot && !news.redraw;
  return uploadsOnly ? uploadOnly() : drawFrame();
}

FrameLoop::Next FrameLoop::drawFrame() {
  ShownFrame frame{.begun = clock_.now(), .refreshInterval = surface_.refreshInterval()};
  pacer_.setInterval(wholeNanoseconds(frame.refreshInterval));
  const Seconds seen = mediaSeconds(pacer_.begin(frame.begun));
  evaluate(*snapshot_, seen, list_);
  const bool moving = isMoving(*snapshot_, seen);
  painter_->want(list_.wanted);
  const auto uploads = upload(moving ? kUploadWhileMoving : kUploadWhileStill);
  painter_->draw(list_, surface_.sizePx());
  surface_.swapBuffers();
  frame.shown = clock_.now();
  frame.moving = moving;
  tell(frame);
  if (const auto failure = painter_->failure()) logOnce(*failure);
  if (moving) return Next::Frame;
  pacer_.rest();
  return uploads.pending ? Next::Upload : Next::Sleep;
}

FrameLoop::Next FrameLoop::uploadOnly() {
  const auto uploads = upload(kUploadWhileStill);
  if (uploads.shownBetter) return drawFrame();
  return uploads.pending ? Next::Upload : Next::Sleep;
}

void FrameLoop::tell(ShownFrame frame) {
  if (watcher_ == nullptr) return;
  frame.longestUpload = std::exchange(longestUpload_, {});
  BitmapRef topmost;
  for (const Quad& quad : list_.quads) {
    const auto* picture = std::get_if<PictureQuad>(&quad);
    if (picture == nullptr || picture->pixelForPixel || picture->opacity <= 0)
      continue;  // text is pixel for pixel
    ++frame.pictures;
    topmost = picture->contents;
  }
  const bool same = !topmost_.owner_before(topmost) && !topmost.owner_before(topmost_);
  frame.anotherPicture = topmost != nullptr && !same;
  topmost_ = topmost;
  watcher_->frameShown(frame);
}

UploadProgress FrameLoop::upload(Nanoseconds budget) {
  const MediaTime begun = clock_.now();
  const auto progress = painter_->upload(budget);
  if (progress.sent) longestUpload_ = std::max(longestUpload_, clock_.now() - begun);
  return progress;
}

void FrameLoop::closeDown() {
  snapshot_.reset();
  list_ = {};
  if (!contextMade_) return;
  const bool lost = !surface_.makeCurrent() || surface_.takeContextLoss();
  if (lost && painter_) painter_->abandon();
  painter_.reset();
  surface_.doneCurrent();
}

void FrameLoop::logOnce(std::string_view failure) {
  if (failureLogged_) return;
  failureLogged_ = true;
  log_.error("Drawing failed: " + std::string(failure));
}

}  // namespace lumivane

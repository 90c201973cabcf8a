#include "compositor/render/SnapshotMailbox.h"

#include <utility>

namespace lumivane {

void SnapshotMailbox::publish(std::shared_ptr<const FrameSnapshot> snapshot) {
  std::shared_ptr<const FrameSnapshot> dropped;  // freed outside the lock: it may hold a large picture
  const std::lock_guard lock(mutex_);
  dropped = std::exchange(unread_, std::move(snapshot));
  wake_.notify_one();
}

void SnapshotMailbox::setExposed(bool exposed) {
  std::unique_lock lock(mutex_);
  exposed_ = exposed;
  redraw_ = exposed;
  wake_.notify_one();
  if (!exposed) over_.wait(lock, [&] { return !drawing_; });
}

void SnapshotMailbox::stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  wake_.notify_one();
}

SnapshotMailbox::News SnapshotMailbox::wait(std::optional<Nanoseconds> longest) {
  std::unique_lock lock(mutex_);
  if (longest && exposed_) {
    wake_.wait_for(lock, *longest, [&] { return hasNews() || !exposed_; });
  } else {
    wake_.wait(lock, [&] { return hasNews(); });
  }
  drawing_ = exposed_ && !stopped_;
  News news{nullptr, exposed_, std::exchange(redraw_, false), stopped_};
  if (drawing_) news.snapshot = std::exchange(unread_, nullptr);
  return news;
}

void SnapshotMailbox::pause(Nanoseconds time) {
  std::unique_lock lock(mutex_);
  wake_.wait_for(lock, time, [&] { return stopped_ || !exposed_; });
}

void SnapshotMailbox::frameOver() {
  const std::lock_guard lock(mutex_);
  drawing_ = false;
  over_.notify_all();
}

bool SnapshotMailbox::hasNews() const {
  return stopped_ || (exposed_ && (redraw_ || unread_));
}

}  // namespace lumivane

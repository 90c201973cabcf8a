#include "platform/linux/QtMainLoop.h"

#include <QAbstractEventDispatcher>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <utility>

namespace lumivane {
namespace {

using std::chrono::milliseconds;

// Qt counts a timer's milliseconds in an int.
constexpr milliseconds kLongestTimer{std::numeric_limits<int>::max()};

milliseconds wholeMilliseconds(Nanoseconds time) {
  return std::max(std::chrono::ceil<milliseconds>(time), milliseconds(0));
}

class QtTimer final : public Timer {
 public:
  QTimer timer;
};

}  // namespace

Qt::TimerType timerTypeFor(Nanoseconds interval, Nanoseconds tolerance) {
  // Below this a twentieth is less than the resolution of the timers, and grouping would be seen as a stutter.
  constexpr Nanoseconds kShortest = std::chrono::milliseconds(100);
  return interval >= kShortest && tolerance >= interval / 20 ? Qt::CoarseTimer : Qt::PreciseTimer;
}

QtMainLoop::QtMainLoop(Log& log) : log_(log) {}

void QtMainLoop::perform(const Job& job) {
  try {
    job();
  } catch (const std::exception& exception) {
    log_.error(std::string("a job of the main loop failed: ") + exception.what());
  } catch (...) {
    log_.error("a job of the main loop failed");
  }
}

// One event for each job keeps the jobs in their place among Qt's own events.
void QtMainLoop::post(Job job) {
  {
    const std::scoped_lock lock(mutex_);
    posted_.push_back(std::move(job));
  }
  QMetaObject::invokeMethod(
      &receiver_, [this] { performPosted(); }, Qt::QueuedConnection);
}

void QtMainLoop::performPosted() {
  Job job;
  {
    const std::scoped_lock lock(mutex_);
    job = std::move(posted_.front());
    posted_.pop_front();
  }
  perform(job);
}

void QtMainLoop::after(Nanoseconds delay, Job job) {
  const milliseconds whole = wholeMilliseconds(delay);
  if (whole > kLongestTimer) {
    const Nanoseconds rest = delay - kLongestTimer;
    return after(kLongestTimer, [this, rest, job = std::move(job)] { after(rest, job); });
  }
  auto* timer =
      new QTimer(&receiver_);  // not QTimer::singleShot(): that one keeps its job beyond the receiver's end
  timer->setSingleShot(true);
  timer->setTimerType(Qt::PreciseTimer);
  QObject::connect(timer, &QTimer::timeout, &receiver_, [this, timer, job = std::move(job)] {
    timer->deleteLater();
    perform(job);
  });
  timer->start(whole);
}

std::unique_ptr<Timer> QtMainLoop::every(Nanoseconds interval, Nanoseconds tolerance, Job job) {
  auto timer = std::make_unique<QtTimer>();
  timer->timer.setTimerType(timerTypeFor(interval, tolerance));
  timer->timer.setInterval(std::clamp(wholeMilliseconds(interval), milliseconds(1), kLongestTimer));
  QObject::connect(&timer->timer, &QTimer::timeout, &receiver_,
                   [this, job = std::move(job)] { perform(job); });
  timer->timer.start();
  return timer;
}

void QtMainLoop::atEndOfTurn(Job job) {
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &receiver_,
                   [this, job = std::move(job)] { perform(job); });
}

}  // namespace lumivane

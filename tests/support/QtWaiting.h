// Runs Qt's event loop until something is so, with a deadline that only a failing test reaches.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <functional>

namespace lumivane {

[[nodiscard]] inline bool waitUntil(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(10'000);
  while (!condition() && !deadline.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
  }
  return condition();
}

// Handles all that is pending now, and what that makes pending.
inline void runPendingEvents() {
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents();
}

}  // namespace lumivane

#include "platform/linux/SystemClock.h"

#include <ctime>
#include <thread>

namespace lumivane {

void holdUp(Nanoseconds span) {
  std::this_thread::sleep_for(span);
}

MediaTime SystemClock::now() const {
  timespec time{};
  // CLOCK_MONOTONIC stands still in suspend: the picture of yesterday evening would stay for its full time.
  ::clock_gettime(CLOCK_BOOTTIME, &time);
  return MediaTime(std::chrono::seconds(time.tv_sec) + Nanoseconds(time.tv_nsec));
}

WallTime SystemClock::wallTime() const {
  return std::chrono::system_clock::now();
}

}  // namespace lumivane

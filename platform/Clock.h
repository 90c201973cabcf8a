// The two clocks of the slideshow: media time, which only runs forward, and the calendar's wall time.
//
// Threads: now() and wallTime() from any thread.
// Units:   media time in nanoseconds since an arbitrary start, counting on through suspend.
// Errors:  none.
#pragma once

#include <algorithm>
#include <chrono>

namespace lumivane {

using Nanoseconds = std::chrono::nanoseconds;
using Seconds = std::chrono::duration<double>;

// Names the time line that pictures change and move on. It never jumps with the calendar, so a wrong or
// corrected wall clock neither stalls the show nor rushes it.
struct MediaTimeLine {
  using rep = Nanoseconds::rep;
  using period = Nanoseconds::period;
  using duration = Nanoseconds;
  using time_point = std::chrono::time_point<MediaTimeLine>;
  static constexpr bool is_steady = true;
};
using MediaTime = std::chrono::time_point<MediaTimeLine, Nanoseconds>;
using WallTime = std::chrono::system_clock::time_point;

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual MediaTime now() const = 0;
  [[nodiscard]] virtual WallTime wallTime() const = 0;
};

// Media time as the seconds that layers and animations are timed in.
[[nodiscard]] inline Seconds mediaSeconds(MediaTime time) {
  return std::chrono::duration_cast<Seconds>(time.time_since_epoch());
}

// Seconds as whole nanoseconds, by truncation; at most about a century either way.
[[nodiscard]] inline Nanoseconds wholeNanoseconds(Seconds seconds) {
  constexpr Seconds kCentury{3.0e9};
  return std::chrono::duration_cast<Nanoseconds>(std::clamp(seconds, -kCentury, kCentury));
}

}  // namespace lumivane

// Measures laps for whoever looks for lost time: a mark, and the time since it as often as wanted.
//
// Threads: the thread that owns it.
// Units:   microseconds in the log.
// Errors:  none; without a mark the laps count from the clock's start.
#pragma once

#include <array>
#include <cstdio>
#include <string>

#include "platform/Clock.h"
#include "platform/Log.h"

namespace lumivane {

class LapTimer {
 public:
  LapTimer(const Clock& clock, Log& log) : clock_(clock), log_(log) {}

  void mark() { mark_ = clock_.now(); }
  // Logs the time since the mark, which stays where it is: several laps add up.
  void lap(const std::string& label) {
    const double microseconds = std::chrono::duration<double, std::micro>(clock_.now() - mark_).count();
    std::array<char, 64> number{};
    std::snprintf(number.data(), number.size(), "%f", microseconds);
    log_.information("timing of " + label + ": " + number.data() + " microseconds");
  }

 private:
  const Clock& clock_;
  Log& log_;
  MediaTime mark_{};
};

}  // namespace lumivane

// When the next frame is to begin, and when it will be seen.
//
// Threads: one.
// Units:   media time; intervals in nanoseconds.
// Errors:  none; an interval outside 1/1000 s to 1 s is taken as 1/60 s.
//
// Where swapping the buffers waits for the display, the display sets the pace: a frame may begin as soon as the last
// swap has returned. Where it does not wait (a virtual X server), frames would follow each other without end, so
// they wait for deadlines one interval apart. Which of the two it is shows by itself: frames that are allowed to
// begin somewhat early do begin early only where nothing holds them back.
#pragma once

#include <optional>

#include "platform/Clock.h"

namespace lumivane {

class FramePacer {
 public:
  // So many frames in a row have to begin early before deadlines are used: a display that sets the pace takes up to
  // three at once when it starts, and up to four more begin early until they have fallen into step with it.
  static constexpr int kProof = 12;

  explicit FramePacer(Nanoseconds interval);

  void setInterval(Nanoseconds interval);

  // How long to wait at `now` before the next frame may begin; 0 = at once.
  [[nodiscard]] Nanoseconds waitBefore(MediaTime now) const;

  // A frame begins: returns the time at which it will be seen. Evenly spaced as long as the frames come about one
  // interval apart, whatever the jitter of their beginnings; never earlier than that of the frame before.
  MediaTime begin(MediaTime now);

  // Nothing is drawn for a while; the next frame begins a new row.
  void rest();

 private:
  [[nodiscard]] bool usesDeadlines() const { return earlyInARow_ >= kProof; }
  void notePeriod(Nanoseconds period);

  Nanoseconds interval_;
  std::optional<MediaTime> lastBegin_;
  MediaTime deadline_;
  MediaTime lastSeen_;
  int earlyInARow_ = 0;
};

}  // namespace lumivane

// What is remembered of pictures that a decoder process did not survive: which are not tried again, and when the next
// process may be started.
//
// Threads: none of its own; guarded by whoever has it.
// Owns:    the paths of such pictures, a bounded number.
// Units:   media time, handed in.
// Errors:  none.
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "platform/Clock.h"

namespace lumivane {

// A picture that ended the process this often is not tried again in this run.
inline constexpr int kMostDeathsOfPicture = 2;
// From this many deaths in a row on, each start waits, first this long and then twice as long each time.
inline constexpr int kDeathsBeforeWaiting = 3;
inline constexpr Nanoseconds kFirstWait = std::chrono::milliseconds(100);
inline constexpr Nanoseconds kLongestWait = std::chrono::minutes(1);

class DecoderTroubles {
 public:
  // A process ended, or was ended, while it worked on this picture; empty: before it worked on any.
  void noteDeath(const std::string& path, MediaTime now);
  // A process did what was asked of it.
  void noteSuccess() { deathsInARow_ = 0; }

  [[nodiscard]] bool isDeadly(const std::string& path) const;
  // How long the next start has to wait; zero or less: it may be now.
  [[nodiscard]] Nanoseconds waitBeforeStart(MediaTime now) const;

 private:
  static constexpr std::size_t kMostPaths = 4096;

  std::map<std::string, int, std::less<>> deathsOfPicture_;
  int deathsInARow_ = 0;
  MediaTime lastDeath_;
};

}  // namespace lumivane

// The two small files through which a companion launcher and the program talk: the launcher leaves a request before it
// starts the program, and the program says that it is alive.
//
// Threads: main only.
// Format:  the request is one flag, the whole file; the alive file is the time of launch as one line of text.
// Errors:  logged; without the folder there is no request, and nobody learns that the program is alive.
#pragma once

#include <string>

#include "app/LaunchFlags.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Log.h"

namespace lumivane {

// Takes a word, from wherever it comes; one that is no flag is logged.
void addOrLog(LaunchFlags& flags, const std::string& word, Log& log);

class LauncherFiles {
 public:
  // The folder for the user's program state, in which the one shared with the launcher lies; empty = there is none.
  LauncherFiles(Files& files, Log& log, const std::string& stateFolder);

  // Adds what a request of the last seconds asks for, and removes the request in any case.
  void takeRequest(LaunchFlags& flags, WallTime now) const;

  void writeAliveFile(WallTime launched);
  // The last thing that a program does that ends as it should.
  void removeAliveFile();

 private:
  [[nodiscard]] bool isFresh(const std::string& request, WallTime now) const;

  Files& files_;
  Log& log_;
  const std::string container_;      // empty = there is none
  std::string lumivane_alive_file_;  // empty until it was to be written
};

}  // namespace lumivane

// Remembers where the window stood and how large it was, from one run to the next.
//
// Threads: main only.
// Format:  a property list, "de.orvik.LumivaneApp.window.plist": X, Y, Width, Height in points as in
//          platform/Window.h.
// Errors:  logged; a file that cannot be used counts as none, and stays until the next save.
#pragma once

#include <optional>
#include <string>

#include "platform/Files.h"
#include "platform/Geometry.h"
#include "platform/Log.h"

namespace lumivane {

class WindowPlace {
 public:
  // The folder for the user's program state; empty = nothing is remembered.
  WindowPlace(Files& files, Log& log, const std::string& stateFolder);

  [[nodiscard]] std::optional<RectPt> load();
  // Writes nothing when this is what was loaded or saved last.
  void save(const RectPt& frame);

 private:
  Files& files_;
  Log& log_;
  const std::string path_;
  std::optional<RectPt> known_;
};

}  // namespace lumivane

// The displays of the desktop that the program was started on, by the names that their settings are filed under.
//
// Threads: main only.
// Owns:    the connection to the window system, from the first question on.
// Errors:  no display server that can be reached is the same as no displays.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Displays.h"
#include "platform/Log.h"
#include "platform/linux/Environment.h"

class QGuiApplication;

namespace lumivane {

class AttachedDisplays {
 public:
  AttachedDisplays(Environment environment, Log& log);
  ~AttachedDisplays();
  AttachedDisplays(const AttachedDisplays&) = delete;
  AttachedDisplays& operator=(const AttachedDisplays&) = delete;

  // With unique names, in the window system's order.
  [[nodiscard]] std::vector<Display> all();
  // The name of the display that the slideshow opens on. Absent: there is none.
  [[nodiscard]] std::optional<std::string> primaryName();

 private:
  bool connect();

  const Environment environment_;
  Log& log_;
  std::unique_ptr<QGuiApplication> application_;
};

}  // namespace lumivane

// The displays as Qt's window system integration lists them.
//
// Threads: main only; made after QGuiApplication and destroyed before it.
// Owns:    the calls to be made when the displays change.
// Errors:  as in Displays.h.
#pragma once

#include <QObject>

#include "platform/Displays.h"
#include "platform/MainLoop.h"

class QScreen;

namespace lumivane {

class QtDisplays final : public Displays {
 public:
  QtDisplays();
  [[nodiscard]] std::vector<Display> attached() const override;

  // Calls the job when a display comes or goes, or changes its place, size, scale or number.
  void onChange(Job job);

 private:
  void watch(QScreen* screen);
  void changed();

  std::vector<Job> jobs_;
  QObject receiver_;  // last: no call comes once it is gone
};

// A screen's number in the window system's order; 0 when it is not attached (any more).
[[nodiscard]] DisplayNumber displayNumberOf(const QScreen* screen);

}  // namespace lumivane

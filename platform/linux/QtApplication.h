// The running program as Qt knows it.
//
// Threads: as in Application.h; made after QGuiApplication.
// Errors:  none. A dialog that does not want to close goes with the program.
#pragma once

#include "platform/Application.h"

namespace lumivane {

class QtApplication final : public Application {
 public:
  // Every window is closed as if the user had asked for it, and hears so; then Qt's main loop ends.
  void terminate() override;
};

}  // namespace lumivane

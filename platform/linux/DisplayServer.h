// Whether a window system answers: asked before Qt is started, which ends the program when none does.
//
// Threads: any.
// Errors:  none; any doubt is a no.
#pragma once

#include "platform/linux/Environment.h"

namespace lumivane {

// Tries what QT_QPA_PLATFORM names, or else both the Wayland display and the X display of the environment. Platforms
// that draw nowhere ("offscreen", "minimal") always answer. A program that needs no window starts Qt with the
// platform "offscreen", or not at all, where this says no.
[[nodiscard]] bool displayServerReachable(const Environment& environment);

}  // namespace lumivane

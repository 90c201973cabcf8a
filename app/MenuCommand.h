// What the menu can do, and which keys do the same.
//
// Threads: any; pure.
// Errors:  none.
#pragma once

#include <optional>

#include "platform/Window.h"

namespace lumivane {

enum class MenuCommand { Preferences, Help, FullScreen, Quit };

// The menu's shortcuts: Control and comma, F1, F11, Control and Q. The slideshow's own keys are none of them.
[[nodiscard]] std::optional<MenuCommand> menuCommandOf(const KeyEvent& event);

}  // namespace lumivane

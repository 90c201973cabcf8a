// Whether somebody manages the windows of an X11 screen.
//
// Threads: main only; after QGuiApplication.
// Errors:  none; any doubt is a yes.
#pragma once

namespace lumivane {

// True on an X server without a window manager (a kiosk, a bare server), where a window must size and place itself.
// False everywhere else: on Wayland, too.
[[nodiscard]] bool lacksWindowManager();

}  // namespace lumivane

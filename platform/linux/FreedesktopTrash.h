// The trash of the freedesktop desktops, through GIO: in the home folder, or on the disk that the file lies on.
//
// Threads: as in Trash.h. Where gvfs is installed, the first call waits for a session bus that hangs (not for one that
//          is missing); the file has been moved by then.
// Errors:  as in Trash.h, in the user's language as far as GLib has been given one. A path that text and file system
//          understand differently ("link/../a.jpg") is refused.
#pragma once

#include "platform/Trash.h"

namespace lumivane {

class FreedesktopTrash final : public Trash {
 public:
  [[nodiscard]] Result<Done> trashItem(const std::string& path) override;
};

}  // namespace lumivane

// The desktop's own programs for pages and mails.
//
// Threads: as in Workspace.h.
// Errors:  as in Workspace.h. Whether a program that was started shows the page is not known.
#pragma once

#include "platform/Workspace.h"

namespace lumivane {

class DesktopWorkspace final : public Workspace {
 public:
  // Absolute URLs alone, with nothing in them that a URL has to encode.
  bool openUrl(const std::string& url) override;
};

}  // namespace lumivane

// What the desktop opens for us: pages, mails.
//
// Threads: main only; the call returns at once.
// Errors:  false when the text is no URL or nothing opens it.
#pragma once

#include <string>

namespace lumivane {

class Workspace {
 public:
  virtual ~Workspace() = default;
  virtual bool openUrl(const std::string& url) = 0;
};

}  // namespace lumivane

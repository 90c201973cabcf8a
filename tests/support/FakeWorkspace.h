// A desktop that opens nothing and remembers what it was asked for.
#pragma once

#include <string>
#include <vector>

#include "platform/Workspace.h"

namespace lumivane {

class FakeWorkspace final : public Workspace {
 public:
  std::vector<std::string> opened;
  bool canOpen = true;

  bool openUrl(const std::string& url) override {
    opened.push_back(url);
    return canOpen && !url.empty();
  }
};

}  // namespace lumivane

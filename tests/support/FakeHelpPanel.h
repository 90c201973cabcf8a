// A help panel that remembers what it was asked to show.
#pragma once

#include <string>
#include <vector>

#include "platform/HelpPanel.h"

namespace lumivane {

class FakeHelpPanel final : public HelpPanel {
 public:
  bool hasDocument = true;
  std::vector<std::string> loaded;
  int shows = 0;

  [[nodiscard]] Result<Done> loadDocument(const std::string& name) override {
    loaded.push_back(name);
    if (!hasDocument) return Error{"no such resource"};
    return Done{};
  }
  void orderFront() override { ++shows; }
};

}  // namespace lumivane

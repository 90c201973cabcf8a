// The panel that shows the help document.
//
// Threads: main only.
// Errors:  setDocument() says why a document cannot be shown; the panel is then empty.
#pragma once

#include <string>

#include "platform/Result.h"

namespace lumivane {

class HelpPanel {
 public:
  virtual ~HelpPanel() = default;
  // Loads the rich-text document of this name from the program's resources, readable in light and dark.
  [[nodiscard]] virtual Result<Done> loadDocument(const std::string& name) = 0;
  virtual void orderFront() = 0;
};

}  // namespace lumivane

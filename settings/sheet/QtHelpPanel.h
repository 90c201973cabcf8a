// The help panel as a window that can be used beside the show and beside the preferences.
//
// Threads: main only; made after QApplication.
// Owns:    the window.
// Errors:  as in HelpPanel.h.
#pragma once

#include "platform/HelpPanel.h"
#include "platform/Workspace.h"
#include "platform/widgets/DialogOverWindow.h"
#include "settings/sheet/HelpDialog.h"

namespace lumivane {

class QtHelpPanel final : public HelpPanel {
 public:
  // Links in the document are opened in the workspace, which must outlive the panel.
  QtHelpPanel(WindowSource window, Workspace& workspace);

  // Documents lie among the program's resources, inside the program itself. One that is shown already is kept.
  [[nodiscard]] Result<Done> loadDocument(const std::string& name) override;
  void orderFront() override;

  [[nodiscard]] HelpDialog& dialog() { return dialog_; }

 private:
  std::string shown_;  // name of the document; empty = none
  HelpDialog dialog_;
  DialogOverWindow overWindow_;
};

}  // namespace lumivane

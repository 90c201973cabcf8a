// The desktop's own dialog for choosing a folder.
//
// Threads: main only. The dialog is modal for the slideshow's window, and the main loop goes on turning.
// Errors:  a dialog that cannot be shown, or whose window goes, counts as dismissed.
#pragma once

#include <functional>
#include <string>

namespace lumivane {

struct FolderQuestion {
  std::string startFolder{};   // where the dialog opens; empty = the desktop's choice
  std::string message{};       // shown above the list; empty = none
  std::string confirmLabel{};  // on the button that confirms; empty = the desktop's own
};

struct FolderAnswer {
  long response = 0;   // 1 = confirmed; anything else is a denial
  std::string folder;  // the chosen folder, absolute, any bytes; may be filled with a denial as well
};

class FolderChooser {
 public:
  using Completion = std::function<void(const FolderAnswer& answer)>;

  virtual ~FolderChooser() = default;
  // Returns at once; the completion runs on the main loop, exactly once. A second question while one is open waits.
  virtual void choose(const FolderQuestion& question, Completion completion) = 0;
};

}  // namespace lumivane

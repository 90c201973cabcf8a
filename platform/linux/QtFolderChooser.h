// The folder dialog of the desktop, or Qt's own where the desktop has none, and for questions with a message: the
// desktops' dialogs show none.
//
// A folder whose disk does not answer at once is not where a dialog begins.
//
// Qt's own dialog keeps the last folder and its places in ~/.config/QtProject.conf, as in every program with Qt.
//
// Threads: as in FolderChooser.h; made after QApplication.
// Owns:    the dialog, and the questions that wait. Those that are open when it ends are not answered any more.
// Errors:  as in FolderChooser.h. A place that is no folder of this machine counts as dismissed.
#pragma once

#include <QObject>
#include <deque>
#include <memory>

#include "platform/BoundedCalls.h"
#include "platform/FolderChooser.h"
#include "platform/widgets/DialogOverWindow.h"

namespace lumivane {

class QtFolderChooser final : public FolderChooser {
 public:
  // The calls ask the disk of the folder that a dialog is to begin with.
  QtFolderChooser(WindowSource window, BoundedCalls& calls);
  ~QtFolderChooser() override;
  void choose(const FolderQuestion& question, Completion completion) override;

 private:
  struct OpenQuestion;

  void later(std::function<void()> job);  // in the next turn of the main loop
  void askNext();
  void closed(bool confirmed);
  void answer(const Completion& completion, const FolderAnswer& given);

  const WindowSource window_;
  BoundedCalls& calls_;
  std::deque<std::pair<FolderQuestion, Completion>> waiting_;
  std::unique_ptr<OpenQuestion> open_;
  QObject receiver_;  // last: nothing comes once it is gone
};

}  // namespace lumivane

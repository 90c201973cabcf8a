// The folder dialog of the desktop portal (org.freedesktop.portal.FileChooser): the desktop's own, whichever it is.
//
// Where there is no portal, or one that cannot choose folders, and for questions with a message, which the portal does
// not show, another chooser is asked.
//
// Threads: as in FolderChooser.h.
// Owns:    the request to the portal, and the questions that wait. Those that are open when it ends are not answered
//          any more.
// Errors:  as in FolderChooser.h. A portal that goes while its dialog is open counts as a dismissal.
#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <memory>

#include "platform/FolderChooser.h"
#include "platform/linux/BusAccess.h"

class QDBusPendingCall;
class QDBusPendingCallWatcher;
class QWindow;

namespace lumivane {

class PortalRequest;

class PortalFolderChooser final : public FolderChooser {
 public:
  // `window` gives the window that the dialog lies over, nullptr while there is none.
  // Requires: `withoutPortal` outlives this.
  PortalFolderChooser(WhenBusOpen whenBusOpen, std::function<QWindow*()> window,
                      FolderChooser& withoutPortal);
  ~PortalFolderChooser() override;

  void choose(const FolderQuestion& question, Completion completion) override;

 private:
  void askNext();
  void askVersion(const QDBusConnection& bus);
  void openDialog(const QDBusConnection& bus);
  void leaveToOther();
  void answer(const FolderAnswer& given);
  void close(const FolderAnswer& given);
  void whenAnswered(const QDBusPendingCall& call, std::function<void(QDBusPendingCallWatcher&)> then);

  const WhenBusOpen whenBusOpen_;
  const std::function<QWindow*()> window_;
  FolderChooser& withoutPortal_;
  std::deque<std::pair<FolderQuestion, Completion>> waiting_;  // the first is being asked while `asking_`
  bool asking_ = false;
  bool closing_ = false;  // the question that is being asked has its answer
  int dialogsOpened_ = 0;
  std::unique_ptr<PortalRequest> request_;                            // the dialog that is open
  std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);  // gone with this object
  QObject receiver_;                                                  // last: no answer comes once it is gone
};

}  // namespace lumivane

// The file browser behind org.freedesktop.FileManager1 on the session bus.
//
// Threads: as in FileBrowser.h.
// Owns:    the calls that have not been answered yet; their answers are dropped when it ends.
// Errors:  as in FileBrowser.h: no session bus, no such service, one that answers with an error or not at all.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "platform/FileBrowser.h"
#include "platform/Log.h"
#include "platform/linux/BusAccess.h"

class QDBusPendingCall;

namespace lumivane {

// Opens a folder in whatever program shows folders; false when there is none.
using OpenFolder = std::function<bool(const std::string& folder)>;

class DBusFileBrowser final : public FileBrowser {
 public:
  DBusFileBrowser(Log& log, WhenBusOpen whenBusOpen, OpenFolder openFolder);
  void selectFile(const std::string& path) override;

 private:
  void ask(const QDBusConnection& bus, const std::string& uri, const std::string& folder);
  void openFolderUnlessShown(const QDBusPendingCall& call, const std::string& folder);

  Log& log_;
  const WhenBusOpen whenBusOpen_;
  const OpenFolder openFolder_;
  std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);  // gone with this object
  QObject receiver_;                                                  // last: no answer comes once it is gone
};

// Opens the folder with the program that the desktop has for folders.
[[nodiscard]] bool openFolderOnDesktop(const std::string& folder);

}  // namespace lumivane

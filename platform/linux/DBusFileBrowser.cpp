#include "platform/linux/DBusFileBrowser.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDesktopServices>
#include <QStringList>
#include <QUrl>
#include <filesystem>
#include <utility>

#include "platform/PrintableText.h"
#include "platform/linux/FileUri.h"

namespace lumivane {
namespace {

QDBusMessage showItems(const std::string& uri) {
  QDBusMessage message =
      QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                     "org.freedesktop.FileManager1", "ShowItems");
  const QString noStartupId;
  message << QStringList{QString::fromStdString(uri)} << noStartupId;
  return message;
}

std::string reasonOf(const QDBusError& error) {
  return printable((error.name() + ": " + error.message()).toStdString());
}

}  // namespace

DBusFileBrowser::DBusFileBrowser(Log& log, WhenBusOpen whenBusOpen, OpenFolder openFolder)
    : log_(log), whenBusOpen_(std::move(whenBusOpen)), openFolder_(std::move(openFolder)) {}

void DBusFileBrowser::selectFile(const std::string& path) {
  const std::optional<std::string> uri = fileUri(path);
  if (!uri) return log_.error("The file browser cannot show " + printable(path) + ": not an absolute path.");
  const std::string folder = std::filesystem::path(path).parent_path().string();
  whenBusOpen_([this, alive = std::weak_ptr(alive_), uri = *uri, folder](const QDBusConnection& bus) {
    if (!alive.expired()) ask(bus, uri, folder);
  });
}

void DBusFileBrowser::ask(const QDBusConnection& bus, const std::string& uri, const std::string& folder) {
  const QDBusPendingCall call = bus.asyncCall(showItems(uri));
  // Without a bus there is no call whose end could be waited for.
  if (call.isFinished()) return openFolderUnlessShown(call, folder);
  auto* watcher = new QDBusPendingCallWatcher(call, &receiver_);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &receiver_, [this, watcher, folder] {
    watcher->deleteLater();
    openFolderUnlessShown(*watcher, folder);
  });
}

void DBusFileBrowser::openFolderUnlessShown(const QDBusPendingCall& call, const std::string& folder) {
  if (!call.isError()) return;
  log_.error("No file browser selects files (" + reasonOf(call.error()) + "); opening the folder " +
             printable(folder) + ".");
  if (!openFolder_(folder)) log_.error("No program opens the folder " + printable(folder) + ".");
}

bool openFolderOnDesktop(const std::string& folder) {
  const std::optional<std::string> uri = fileUri(folder);
  return uri && QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(*uri)));
}

}  // namespace lumivane

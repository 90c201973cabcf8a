#include "platform/linux/PortalFolderChooser.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QWindow>
#include <utility>

#include "platform/linux/FileUri.h"
#include "platform/linux/PortalRequest.h"

namespace lumivane {
namespace {

constexpr const char* kFileChooser = "org.freedesktop.portal.FileChooser";
constexpr uint kVersionWithFolders = 3;  // older ones offer files, whatever they are asked for
constexpr int kVersionPatienceMs = 5000;
constexpr long kConfirmed = 1;

QDBusMessage versionQuestion() {
  QDBusMessage message =
      QDBusMessage::createMethodCall(kPortal, kPortalPath, "org.freedesktop.DBus.Properties", "Get");
  message << QString(kFileChooser) << QString("version");
  return message;
}

// The window as the portal is told of it. Qt 6.4 has no name for one on Wayland.
QString nameOf(const QWindow* window) {
  if (window == nullptr || QGuiApplication::platformName() != "xcb") return {};
  return "x11:" + QString::number(window->winId(), 16);
}

// A path as the portal takes it: its bytes and a zero.
QByteArray portalPath(const std::string& path) {
  return QByteArray(path.c_str(), static_cast<qsizetype>(path.size() + 1));
}

QDBusMessage folderQuestion(const FolderQuestion& question, const QWindow* window, const QString& token) {
  QVariantMap options{{"handle_token", token}, {"directory", true}, {"modal", true}};
  if (!question.confirmLabel.empty()) options["accept_label"] = QString::fromStdString(question.confirmLabel);
  if (!question.startFolder.empty()) options["current_folder"] = portalPath(question.startFolder);
  QDBusMessage message = QDBusMessage::createMethodCall(kPortal, kPortalPath, kFileChooser, "OpenFile");
  message << nameOf(window) << QCoreApplication::translate("FolderChooser", "Choose a Folder") << options;
  return message;
}

FolderAnswer answerOf(uint response, const QVariantMap& results) {
  const QStringList uris = results.value("uris").toStringList();
  if (response != PortalRequest::kSuccess || uris.isEmpty()) return {};
  const std::optional<std::string> folder = pathOfFileUri(uris.first().toStdString());
  return folder ? FolderAnswer{kConfirmed, *folder} : FolderAnswer{};
}

}  // namespace

PortalFolderChooser::PortalFolderChooser(WhenBusOpen whenBusOpen, std::function<QWindow*()> window,
                                         FolderChooser& withoutPortal)
    : whenBusOpen_(std::move(whenBusOpen)), window_(std::move(window)), withoutPortal_(withoutPortal) {}

PortalFolderChooser::~PortalFolderChooser() = default;

void PortalFolderChooser::choose(const FolderQuestion& question, Completion completion) {
  waiting_.emplace_back(question, std::move(completion));
  if (!asking_) askNext();
}

void PortalFolderChooser::askNext() {
  if (waiting_.empty()) return;
  asking_ = true;
  if (!waiting_.front().first.message.empty()) return leaveToOther();
  whenBusOpen_([this, alive = std::weak_ptr(alive_)](const QDBusConnection& bus) {
    if (!alive.expired()) askVersion(bus);
  });
}

void PortalFolderChooser::askVersion(const QDBusConnection& bus) {
  if (!bus.isConnected()) return leaveToOther();
  whenAnswered(bus.asyncCall(versionQuestion(), kVersionPatienceMs),
               [this, bus](QDBusPendingCallWatcher& call) {
                 const QDBusPendingReply<QDBusVariant> reply = call;
                 if (reply.isError() || reply.value().variant().toUInt() < kVersionWithFolders)
                   return leaveToOther();
                 openDialog(bus);
               });
}

void PortalFolderChooser::openDialog(const QDBusConnection& bus) {
  // A dialog over a window that is closed would outlive the show.
  QWindow* window = window_();
  if (window != nullptr && !window->isVisible()) return answer({});
  const QString token = QString("lumivane%1").arg(++dialogsOpened_);
  request_ = std::make_unique<PortalRequest>(
      bus, token, [this](uint response, const QVariantMap& results) { answer(answerOf(response, results)); });
  if (window != nullptr) {
    QObject::connect(window, &QWindow::visibleChanged, request_.get(), [this](bool visible) {
      if (!visible) answer({});
    });
  }
  const QDBusMessage question = folderQuestion(waiting_.front().first, window, token);
  whenAnswered(bus.asyncCall(question), [this, number = dialogsOpened_](QDBusPendingCallWatcher& call) {
    if (request_ == nullptr || closing_ || number != dialogsOpened_) return;  // answered before
    const QDBusPendingReply<QDBusObjectPath> reply = call;
    if (!reply.isError()) return request_->isAt(reply.value().path());
    request_.reset();
    leaveToOther();
  });
}

void PortalFolderChooser::leaveToOther() {
  const FolderQuestion question = waiting_.front().first;
  withoutPortal_.choose(question, [this, alive = std::weak_ptr(alive_)](const FolderAnswer& given) {
    if (!alive.expired()) answer(given);
  });
}

// By way of the loop: the request, or whoever closes the window, is still at it.
void PortalFolderChooser::answer(const FolderAnswer& given) {
  if (std::exchange(closing_, true)) return;
  QMetaObject::invokeMethod(
      &receiver_, [this, given] { close(given); }, Qt::QueuedConnection);
}

void PortalFolderChooser::close(const FolderAnswer& given) {
  request_.reset();
  const Completion completion = std::move(waiting_.front().second);
  waiting_.pop_front();
  asking_ = closing_ = false;
  askNext();
  completion(given);
}

void PortalFolderChooser::whenAnswered(const QDBusPendingCall& call,
                                       std::function<void(QDBusPendingCallWatcher&)> then) {
  auto* watcher = new QDBusPendingCallWatcher(call, &receiver_);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &receiver_,
                   [watcher, then = std::move(then)] {
                     watcher->deleteLater();
                     then(*watcher);
                   });
}

}  // namespace lumivane

#include "platform/linux/PortalRequest.h"

#include <QDBusMessage>
#include <utility>

namespace lumivane {
namespace {

constexpr const char* kRequest = "org.freedesktop.portal.Request";

// Where the portal puts a request: the caller's name on the bus and its token say so.
QString placeOf(const QString& caller, const QString& token) {
  QString name = caller.mid(1);
  name.replace('.', '_');
  return QString(kPortalPath) + "/request/" + name + '/' + token;
}

}  // namespace

PortalRequest::PortalRequest(const QDBusConnection& bus, const QString& token, Answered answered)
    : bus_(bus),
      path_(placeOf(bus.baseService(), token)),
      answered_(std::move(answered)),
      portal_(kPortal, bus, QDBusServiceWatcher::WatchForUnregistration) {
  connect(&portal_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { responded(kDismissed, {}); });
  listen();
}

PortalRequest::~PortalRequest() {
  if (!answered_) return;
  bus_.send(QDBusMessage::createMethodCall(kPortal, path_, kRequest, "Close"));
}

void PortalRequest::isAt(const QString& path) {
  if (path == path_) return;
  bus_.disconnect(kPortal, path_, kRequest, "Response", this, SLOT(responded(uint, QVariantMap)));
  path_ = path;
  listen();
}

void PortalRequest::listen() {
  bus_.connect(kPortal, path_, kRequest, "Response", this, SLOT(responded(uint, QVariantMap)));
}

void PortalRequest::responded(uint response, const QVariantMap& results) {
  const Answered answered = std::exchange(answered_, nullptr);
  if (answered) answered(response, results);
}

}  // namespace lumivane

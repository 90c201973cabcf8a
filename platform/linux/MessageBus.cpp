#include "platform/linux/MessageBus.h"

#include <optional>
#include <utility>

namespace lumivane {

struct MessageBus::Connection {
  std::optional<QDBusConnection> bus;  // there from the queue's first job on
};

MessageBus::MessageBus(QDBusConnection::BusType type, SerialQueues& queues, MainLoop& mainLoop)
    : mainLoop_(mainLoop),
      connection_(std::make_shared<Connection>()),
      queue_(queues.make(type == QDBusConnection::SystemBus ? "LumivaneSystemBus" : "LumivaneSessionBus")) {
  queue_->async([connection = connection_, type] {
    connection->bus =
        type == QDBusConnection::SystemBus ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
  });
}

void MessageBus::whenOpen(UseBus use) {
  queue_->async([connection = connection_, &mainLoop = mainLoop_, use = std::move(use)] {
    mainLoop.post([bus = *connection->bus, use] { use(bus); });
  });
}

}  // namespace lumivane

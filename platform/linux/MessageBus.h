// One D-Bus message bus, opened without making the main thread wait: a bus may be slow, hang, or not be there.
//
// Threads: main only.
// Owns:    the queue on which the bus is opened. Destruction waits for a bus that is being opened.
// Errors:  a bus that cannot be reached is handed out as a connection that is not connected.
#pragma once

#include <QDBusConnection>
#include <functional>
#include <memory>

#include "platform/MainLoop.h"
#include "platform/SerialQueue.h"
#include "platform/linux/BusAccess.h"

namespace lumivane {

class MessageBus {
 public:
  MessageBus(QDBusConnection::BusType type, SerialQueues& queues, MainLoop& mainLoop);

  // Runs the job on the main loop: as soon as the bus is open, never before this call has returned.
  void whenOpen(UseBus use);

 private:
  struct Connection;

  MainLoop& mainLoop_;
  const std::shared_ptr<Connection> connection_;  // the queue's
  std::unique_ptr<SerialQueue> queue_;            // last: its jobs end before the rest goes
};

}  // namespace lumivane

// How those that speak on a message bus are given it.
//
// Threads: main only.
// Errors:  a bus that cannot be had is a connection that is not connected.
#pragma once

#include <QDBusConnection>
#include <functional>

namespace lumivane {

// Hands out the bus on the main thread, now or when it is open. QDBusConnection::sessionBus() itself may wait for the
// bus, and without end for one that hangs.
using UseBus = std::function<void(const QDBusConnection& bus)>;
using WhenBusOpen = std::function<void(UseBus use)>;

}  // namespace lumivane

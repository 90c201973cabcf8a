#include "platform/linux/SilentBuses.h"

#include <poll.h>
#include <systemd/sd-bus.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

using std::chrono::steady_clock;

constexpr const char* kNowhere = "unix:path=/dev/null/no-bus";

struct CloseBus {
  void operator()(sd_bus* bus) const { ::sd_bus_close_unref(bus); }
};
using BusRef = std::unique_ptr<sd_bus, CloseBus>;

// A client that has been sent off, or nullptr where that failed at once.
BusRef begin(const std::string& address) {
  sd_bus* raw = nullptr;
  if (::sd_bus_new(&raw) < 0) return nullptr;
  BusRef bus(raw);
  const bool begun = ::sd_bus_set_address(raw, address.c_str()) >= 0 &&
                     ::sd_bus_set_bus_client(raw, 1) >= 0 && ::sd_bus_start(raw) >= 0;
  return begun ? std::move(bus) : nullptr;
}

// Waits for something to read or write, no longer than until the deadline. False when there is no time left.
bool waitForBus(sd_bus* bus, steady_clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
  if (left.count() <= 0) return false;
  const int events = ::sd_bus_get_events(bus);
  pollfd descriptor{::sd_bus_get_fd(bus), static_cast<short>(std::max(events, 0)), 0};
  ::poll(&descriptor, 1, static_cast<int>(left.count()));
  return true;
}

// What stands here is looked at, and what is missing fails by itself.
std::string addressOf(const Environment& environment, const std::string& variable, const std::string& usual) {
  const std::string address = valueOf(environment, variable);
  return address.empty() && !usual.empty() ? "unix:path=" + usual : address;
}

}  // namespace

bool busAnswers(const std::string& address, std::chrono::milliseconds limit) {
  const auto deadline = steady_clock::now() + limit;
  const BusRef bus = begin(address);
  if (!bus) return true;  // there is nothing to wait for
  for (;;) {
    const int progress = ::sd_bus_process(bus.get(), nullptr);
    if (progress < 0 || ::sd_bus_is_ready(bus.get()) != 0) return true;
    if (progress == 0 && !waitForBus(bus.get(), deadline)) return false;
  }
}

void leaveOutSilentBuses(Environment& environment, Log& log, std::chrono::milliseconds limit) {
  const std::string runtime = valueOf(environment, "XDG_RUNTIME_DIR");
  const auto look = [&](const std::string& variable, const std::string& usual) {
    const std::string address = addressOf(environment, variable, usual);
    if (address.empty() || busAnswers(address, limit)) return;
    log.error("The message bus at " + printable(address) + " does not answer; the show does without it.");
    environment[variable] = kNowhere;
    ::setenv(variable.c_str(), kNowhere, 1);  // NOLINT(concurrency-mt-unsafe): there is no other thread yet
  };
  look("DBUS_SESSION_BUS_ADDRESS", runtime.empty() ? runtime : runtime + "/bus");
  look("DBUS_SYSTEM_BUS_ADDRESS", "/run/dbus/system_bus_socket");
}

}  // namespace lumivane

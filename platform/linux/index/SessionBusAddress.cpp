#include "platform/linux/index/SessionBusAddress.h"

#include <gio/gio.h>

#include <memory>

namespace lumivane {

std::string sessionBusAddress(const Environment& environment, const Files& files) {
  if (std::string address = valueOf(environment, "DBUS_SESSION_BUS_ADDRESS"); !address.empty())
    return address;
  const std::string runtimeFolder = valueOf(environment, "XDG_RUNTIME_DIR");
  const std::string socket = runtimeFolder + "/bus";
  if (!runtimeFolder.starts_with('/') || !files.exists(socket)) return {};
  const std::unique_ptr<char, decltype(&g_free)> escaped(g_dbus_address_escape_value(socket.c_str()), g_free);
  return std::string("unix:path=") + escaped.get();
}

}  // namespace lumivane

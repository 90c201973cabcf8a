#include "platform/linux/DisplayServer.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xcb.h>

#include <string_view>

#include "platform/linux/FileDescriptor.h"

namespace lumivane {
namespace {

bool socketAnswers(const std::string& path) {
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path) return false;
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, path.size());
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  return socket.isOpen() &&
         ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool waylandAnswers(const Environment& environment) {
  std::string display = valueOf(environment, "WAYLAND_DISPLAY");
  if (display.empty() && valueOf(environment, "XDG_SESSION_TYPE") == "wayland") display = "wayland-0";
  if (display.empty()) return false;
  if (display.starts_with('/')) return socketAnswers(display);
  const std::string folder = valueOf(environment, "XDG_RUNTIME_DIR");
  return !folder.empty() && socketAnswers(folder + '/' + display);
}

// With the whole greeting: an X server may listen and yet refuse us.
bool xAnswers(const Environment& environment) {
  const std::string display = valueOf(environment, "DISPLAY");
  if (display.empty()) return false;
  xcb_connection_t* connection = ::xcb_connect(display.c_str(), nullptr);
  const bool answers = ::xcb_connection_has_error(connection) == 0;
  ::xcb_disconnect(connection);
  return answers;
}

bool platformAnswers(std::string_view platform, const Environment& environment) {
  if (platform == "xcb") return xAnswers(environment);
  if (platform.starts_with("wayland")) return waylandAnswers(environment);
  return platform == "offscreen" || platform.starts_with("minimal");
}

}  // namespace

bool displayServerReachable(const Environment& environment) {
  const std::string wanted = valueOf(environment, "QT_QPA_PLATFORM");
  if (wanted.empty()) return waylandAnswers(environment) || xAnswers(environment);
  // "wayland;xcb:option" is a list to be tried in order, each with options of its own.
  std::string_view rest = wanted;
  while (!rest.empty()) {
    const std::size_t end = rest.find(';');
    const std::string_view entry = rest.substr(0, end);
    if (platformAnswers(entry.substr(0, entry.find(':')), environment)) return true;
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return false;
}

}  // namespace lumivane

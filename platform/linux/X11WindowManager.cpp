#include "platform/linux/X11WindowManager.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace lumivane {
namespace {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, FreeReply>;

// The property by which every window manager that keeps to the desktops' conventions (EWMH) makes itself known.
constexpr std::string_view kManagersProperty = "_NET_SUPPORTING_WM_CHECK";

xcb_atom_t managersProperty(xcb_connection_t* connection) {
  const auto request = xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(kManagersProperty.size()),
                                       kManagersProperty.data());
  const ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, request, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

bool hasProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property) {
  const auto request = xcb_get_property(connection, 0, window, property, XCB_ATOM_WINDOW, 0, 1);
  const ReplyPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, request, nullptr));
  return reply && reply->type == XCB_ATOM_WINDOW;
}

}  // namespace

bool lacksWindowManager() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr || x11->connection() == nullptr) return false;
  xcb_connection_t* connection = x11->connection();
  // An atom that nobody has ever named: there is not even a manager that is gone again.
  const xcb_atom_t property = managersProperty(connection);
  if (property == XCB_ATOM_NONE) return xcb_connection_has_error(connection) == 0;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  return !hasProperty(connection, root, property);
}

}  // namespace lumivane

#include "platform/linux/index/SessionBus.h"

#include <string_view>
#include <utility>

namespace lumivane {
namespace {

constexpr const char* kBus = "org.freedesktop.DBus";
constexpr const char* kBusPath = "/org/freedesktop/DBus";

std::string reasonOf(const GioError& error, const TimeLimit& limit) {
  return limit.hasPassed() ? "it takes too long" : error.message();
}

}  // namespace

Result<SessionBus> SessionBus::connect(const std::string& address, TimeLimit& limit) {
  GioError error;
  GioRef<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
      address.c_str(),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, limit.cancellable(), error.out()));
  if (!connection) return Error{"the session bus cannot be reached: " + reasonOf(error, limit)};
  return SessionBus(std::move(connection));
}

Result<VariantRef> SessionBus::call(const char* name, const char* path, const char* interface,
                                    const char* method, GVariant* arguments, const char* answer,
                                    TimeLimit& limit) const {
  GioError error;
  constexpr int kOurOwnLimit = G_MAXINT;
  VariantRef result(g_dbus_connection_call_sync(connection_.get(), name, path, interface, method, arguments,
                                                G_VARIANT_TYPE(answer), G_DBUS_CALL_FLAGS_NO_AUTO_START,
                                                kOurOwnLimit, limit.cancellable(), error.out()));
  if (!result) return Error{reasonOf(error, limit)};
  return result;
}

Result<VariantRef> SessionBus::askBus(const char* method, GVariant* arguments, const char* answer,
                                      TimeLimit& limit) const {
  return call(kBus, kBusPath, kBus, method, arguments, answer, limit);
}

std::optional<std::string> SessionBus::ownerOf(const std::string& name, TimeLimit& limit) const {
  const Result<VariantRef> answer = askBus("GetNameOwner", g_variant_new("(s)", name.c_str()), "(s)", limit);
  if (!answer) return std::nullopt;
  const char* owner = nullptr;
  g_variant_get(answer.value().get(), "(&s)", &owner);
  return std::string(owner);
}

bool SessionBus::isActivatable(const std::string& name, TimeLimit& limit) const {
  const Result<VariantRef> answer = askBus("ListActivatableNames", nullptr, "(as)", limit);
  if (!answer) return false;
  GVariantIter* names = nullptr;
  g_variant_get(answer.value().get(), "(as)", &names);
  const char* known = nullptr;
  bool found = false;
  while (!found && g_variant_iter_next(names, "&s", &known) == TRUE) found = name == known;
  g_variant_iter_free(names);
  return found;
}

Result<Done> SessionBus::activate(const std::string& name, TimeLimit& limit) const {
  const auto answer = askBus("StartServiceByName", g_variant_new("(su)", name.c_str(), 0U), "(u)", limit);
  if (!answer) return Error{answer.error()};
  return Done{};
}

Result<double> SessionBus::numberFrom(const std::string& name, const char* path, const char* interface,
                                      const char* method, TimeLimit& limit) const {
  const Result<VariantRef> answer = call(name.c_str(), path, interface, method, nullptr, "(d)", limit);
  if (!answer) return Error{answer.error()};
  double number = 0;
  g_variant_get(answer.value().get(), "(d)", &number);
  return number;
}

Result<std::string> SessionBus::textFrom(const std::string& name, const char* path, const char* interface,
                                         const char* method, TimeLimit& limit) const {
  const Result<VariantRef> answer = call(name.c_str(), path, interface, method, nullptr, "(s)", limit);
  if (!answer) return Error{answer.error()};
  const char* text = nullptr;
  g_variant_get(answer.value().get(), "(&s)", &text);
  return std::string(text);
}

}  // namespace lumivane

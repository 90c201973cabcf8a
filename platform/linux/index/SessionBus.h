// A connection to the session bus of our own, for questions to a service that may be slow, hang, or go away.
//
// Threads: one at a time; every call blocks within the time limit.
// Owns:    the connection. When the bus goes away nothing happens but that calls fail.
// Errors:  one line for the log.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Result.h"
#include "platform/linux/index/GioHandles.h"
#include "platform/linux/index/TimeLimit.h"

namespace lumivane {

class SessionBus {
 public:
  [[nodiscard]] static Result<SessionBus> connect(const std::string& address, TimeLimit& limit);

  // The unique name of the program that holds the name now. Absent: none does.
  [[nodiscard]] std::optional<std::string> ownerOf(const std::string& name, TimeLimit& limit) const;
  // Whether the bus knows how to start a program for the name.
  [[nodiscard]] bool isActivatable(const std::string& name, TimeLimit& limit) const;
  [[nodiscard]] Result<Done> activate(const std::string& name, TimeLimit& limit) const;
  // A method without arguments that gives one number, or one text.
  [[nodiscard]] Result<double> numberFrom(const std::string& name, const char* path, const char* interface,
                                          const char* method, TimeLimit& limit) const;
  [[nodiscard]] Result<std::string> textFrom(const std::string& name, const char* path, const char* interface,
                                             const char* method, TimeLimit& limit) const;

  [[nodiscard]] GDBusConnection* connection() const { return connection_.get(); }

 private:
  explicit SessionBus(GioRef<GDBusConnection> connection) : connection_(std::move(connection)) {}

  [[nodiscard]] Result<VariantRef> call(const char* name, const char* path, const char* interface,
                                        const char* method, GVariant* arguments, const char* answer,
                                        TimeLimit& limit) const;
  [[nodiscard]] Result<VariantRef> askBus(const char* method, GVariant* arguments, const char* answer,
                                          TimeLimit& limit) const;

  GioRef<GDBusConnection> connection_;
};

}  // namespace lumivane

// Keeps the screens awake through org.freedesktop.ScreenSaver, or through login1 where there is no such service.
//
// Threads: as in KeepAwake.h.
// Owns:    the inhibition, which also ends with the connection to the bus.
// Errors:  as in KeepAwake.h, logged once.
#pragma once

#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <optional>

#include "platform/KeepAwake.h"
#include "platform/Log.h"
#include "platform/linux/MessageBus.h"

class QDBusPendingCall;

namespace lumivane {

class DBusKeepAwake final : public KeepAwake {
 public:
  // The buses must outlive this object.
  DBusKeepAwake(MessageBus& session, MessageBus& system, Log& log);
  ~DBusKeepAwake() override;
  void keepAwake(bool awake) override;

 private:
  enum class State { Idle, Asking, Held };

  void follow();
  void askScreenSaver();
  void askLogin();
  void held();
  void refused(const QString& reason);
  void release();
  [[nodiscard]] UseBus whileAlive(UseBus use) const;
  template <typename Answered>
  void when(const QDBusPendingCall& call, Answered answered);

  MessageBus& session_;
  MessageBus& system_;
  Log& log_;
  State state_ = State::Idle;
  bool wanted_ = false;
  bool complained_ = false;
  std::optional<unsigned> cookie_;          // of the screen saver
  QDBusUnixFileDescriptor loginInhibitor_;  // while it is open
  std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true);
  QObject receiver_;  // last: no answer comes once it is gone
};

}  // namespace lumivane

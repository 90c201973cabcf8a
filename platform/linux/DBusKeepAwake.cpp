#include "platform/linux/DBusKeepAwake.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

namespace lumivane {
namespace {

constexpr auto kProgram = "Lumivane";
constexpr auto kReason = "Showing pictures";

QDBusMessage screenSaverCall(const QString& method) {
  return QDBusMessage::createMethodCall("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                                        "org.freedesktop.ScreenSaver", method);
}

QString text(const char* ascii) {
  return QString::fromLatin1(ascii);
}

}  // namespace

DBusKeepAwake::DBusKeepAwake(MessageBus& session, MessageBus& system, Log& log)
    : session_(session), system_(system), log_(log) {}

DBusKeepAwake::~DBusKeepAwake() {
  release();
}

void DBusKeepAwake::keepAwake(bool awake) {
  if (std::exchange(wanted_, awake) != awake) follow();
}

void DBusKeepAwake::follow() {
  if (wanted_ && state_ == State::Idle) {
    state_ = State::Asking;
    askScreenSaver();
  } else if (!wanted_ && state_ == State::Held) {
    release();
  }
}

void DBusKeepAwake::askScreenSaver() {
  session_.whenOpen(whileAlive([this](const QDBusConnection& bus) {
    QDBusMessage call = screenSaverCall("Inhibit");
    call << text(kProgram) << text(kReason);
    when(bus.asyncCall(call), [this](const QDBusPendingCall& answer) {
      const QDBusPendingReply<unsigned> cookie = answer;
      if (cookie.isError()) return askLogin();
      cookie_ = cookie.value();
      held();
    });
  }));
}

void DBusKeepAwake::askLogin() {
  system_.whenOpen(whileAlive([this](const QDBusConnection& bus) {
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                                       "org.freedesktop.login1.Manager", "Inhibit");
    call << text("idle") << text(kProgram) << text(kReason) << text("block");
    when(bus.asyncCall(call), [this](const QDBusPendingCall& answer) {
      const QDBusPendingReply<QDBusUnixFileDescriptor> inhibitor = answer;
      if (inhibitor.isError()) return refused(inhibitor.error().message());
      loginInhibitor_ = inhibitor.value();
      held();
    });
  }));
}

// The wish may have changed while the answer was under way.
void DBusKeepAwake::held() {
  state_ = State::Held;
  follow();
}

void DBusKeepAwake::refused(const QString& reason) {
  state_ = State::Idle;
  if (std::exchange(complained_, true)) return;
  log_.information("The screens cannot be kept awake: " + reason.toStdString());
}

void DBusKeepAwake::release() {
  if (cookie_) {
    session_.whenOpen([cookie = *cookie_](const QDBusConnection& bus) {
      QDBusMessage call = screenSaverCall("UnInhibit");
      call << cookie;
      bus.asyncCall(call);
    });
  }
  cookie_.reset();
  loginInhibitor_ = {};
  state_ = State::Idle;
}

UseBus DBusKeepAwake::whileAlive(UseBus use) const {
  return [alive = std::weak_ptr(alive_), use = std::move(use)](const QDBusConnection& bus) {
    if (!alive.expired()) use(bus);
  };
}

template <typename Answered>
void DBusKeepAwake::when(const QDBusPendingCall& call, Answered answered) {
  // Without a bus there is no call whose end could be waited for.
  if (call.isFinished()) return answered(call);
  auto* watcher = new QDBusPendingCallWatcher(call, &receiver_);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &receiver_,
                   [watcher, answered = std::move(answered)] {
                     watcher->deleteLater();
                     answered(*watcher);
                   });
}

}  // namespace lumivane

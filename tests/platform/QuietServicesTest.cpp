// Services of the desktop that are slow, never answer or go away: nobody on the main thread waits for them. Under a
// session bus of the test's own (dbus-run-session), without a system bus.
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>

#include "platform/linux/DBusKeepAwake.h"
#include "platform/linux/DBusSleepNotes.h"
#include "platform/linux/QtMainLoop.h"
#include "platform/linux/ThreadSerialQueues.h"
#include "tests/support/QtWaiting.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

constexpr const char* kName = "org.freedesktop.ScreenSaver";
constexpr const char* kPath = "/org/freedesktop/ScreenSaver";
constexpr const char* kConnection = "screen saver";
constexpr qint64 kLongestBlockMs = 50;

// A screen saver that answers when it is told to.
class FakeScreenSaver final : public QDBusVirtualObject {
 public:
  FakeScreenSaver()
      : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, kConnection)),
        ready_(bus_.registerVirtualObject(kPath, this) && bus_.registerService(kName)) {}
  ~FakeScreenSaver() override {
    bus_.unregisterService(kName);
    QDBusConnection::disconnectFromBus(kConnection);
  }
  [[nodiscard]] bool isReady() const { return ready_; }

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override {
    if (message.member() == "Inhibit") inhibits.push_back(message);
    if (message.member() == "UnInhibit") released.push_back(message.arguments().at(0).toUInt());
    return true;
  }
  void answer(unsigned cookie) { bus_.send(inhibits.back().createReply(cookie)); }
  void goDark() {
    QDBusMessage note = QDBusMessage::createSignal(kPath, kName, "ActiveChanged");
    note << true;
    bus_.send(note);
  }

  std::vector<QDBusMessage> inhibits;
  std::vector<unsigned> released;

 private:
  QDBusConnection bus_;
  const bool ready_;
};

class QuietServicesTest : public testing::Test {
 protected:
  // Runs on the main thread what must not make it wait.
  template <typename Work>
  static void promptly(Work work) {
    QElapsedTimer timer;
    timer.start();
    work();
    EXPECT_LT(timer.elapsed(), kLongestBlockMs);
  }
  bool asked() {
    return waitUntil([this] { return !saver->inhibits.empty(); });
  }

  RecordingLog log;
  QtMainLoop loop{log};
  ThreadSerialQueues queues{log};
  std::unique_ptr<FakeScreenSaver> saver = std::make_unique<FakeScreenSaver>();
  MessageBus session{QDBusConnection::SessionBus, queues, loop};
  MessageBus system{QDBusConnection::SystemBus, queues, loop};
  std::unique_ptr<DBusKeepAwake> keepAwake = std::make_unique<DBusKeepAwake>(session, system, log);
};

TEST_F(QuietServicesTest, ScreensAreKeptAwakeAndLetGo) {
  ASSERT_TRUE(saver->isReady());
  keepAwake->keepAwake(true);
  ASSERT_TRUE(asked());
  saver->answer(4711);
  runPendingEvents();
  keepAwake->keepAwake(false);
  if (saver->released.empty()) {  // the answer may not have come yet
    ASSERT_TRUE(waitUntil([this] { return !saver->released.empty(); }));
  }
  EXPECT_EQ(saver->released, std::vector<unsigned>{4711});
}

TEST_F(QuietServicesTest, NobodyWaitsForAScreenSaverThatNeverAnswers) {
  promptly([this] { keepAwake->keepAwake(true); });
  ASSERT_TRUE(asked());
  promptly([this] {
    for (int i = 0; i < 100; ++i) keepAwake->keepAwake(i % 2 == 0);
    keepAwake->keepAwake(false);
    runPendingEvents();
  });
  EXPECT_EQ(saver->inhibits.size(), 1U) << "one question at a time";
  promptly([this] { keepAwake.reset(); });
  EXPECT_TRUE(saver->released.empty());
}

TEST_F(QuietServicesTest, ALateAnswerIsGivenBackWhenNobodyWantsItAnyMore) {
  keepAwake->keepAwake(true);
  ASSERT_TRUE(asked());
  keepAwake->keepAwake(false);
  saver->answer(7);
  ASSERT_TRUE(waitUntil([this] { return !saver->released.empty(); }));
  EXPECT_EQ(saver->released, std::vector<unsigned>{7});
}

TEST_F(QuietServicesTest, AScreenSaverThatDiesIsMissedOnceAndAskedAgain) {
  keepAwake->keepAwake(true);
  ASSERT_TRUE(asked());
  saver.reset();
  ASSERT_TRUE(waitUntil([this] { return log.countStartingWith("The screens cannot be kept awake: ") == 1; }));
  saver = std::make_unique<FakeScreenSaver>();
  keepAwake->keepAwake(false);
  keepAwake->keepAwake(true);
  EXPECT_TRUE(asked());
}

TEST_F(QuietServicesTest, DarkScreensAreTold) {
  DBusSleepNotes notes(queues);
  int sleeps = 0;
  promptly([&] { notes.observe([&sleeps] { ++sleeps; }); });
  // When it has begun to listen, nobody can tell.
  EXPECT_TRUE(waitUntil([&] {
    saver->goDark();
    return sleeps != 0;
  }));
}

TEST_F(QuietServicesTest, ABusIsHandedOutAfterTheCall) {
  bool used = false;
  bool connected = true;
  promptly([&] {
    system.whenOpen([&](const QDBusConnection& bus) {
      used = true;
      connected = bus.isConnected();
    });
  });
  EXPECT_FALSE(used);
  ASSERT_TRUE(waitUntil([&] { return used; }));
  EXPECT_FALSE(connected) << "there is no system bus here";
}

}  // namespace
}  // namespace lumivane

// Under a session bus of the test's own (dbus-run-session); the portal is in the same process, on a second connection.
#include "platform/linux/PortalFolderChooser.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QWindow>
#include <utility>

#include "platform/linux/PortalRequest.h"
#include "tests/support/FakeFolderChooser.h"
#include "tests/support/QtWaiting.h"

namespace lumivane {
namespace {

// A portal that keeps what it was asked, and answers when it is told to.
class FakePortal final : public QDBusVirtualObject {
 public:
  explicit FakePortal(uint version = 3)
      : version_(version),
        bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal")),
        ready_(bus_.registerVirtualObject(kPortalPath, this, QDBusConnection::SubPath) &&
               bus_.registerService(kPortal)) {}
  ~FakePortal() override {
    bus_.unregisterService(kPortal);
    QDBusConnection::disconnectFromBus("portal");
  }
  [[nodiscard]] bool isReady() const { return ready_; }

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (std::exchange(holdsNext, false)) {
      held = message;
      return true;
    }
    if (message.member() == "Get")
      return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(version_))));
    if (message.member() == "Close") return closed = true;
    if (message.member() != "OpenFile") return false;
    if (refuses)
      return connection.send(message.createErrorReply("org.freedesktop.DBus.Error.Failed", "no display"));
    asked = message;
    options = qdbus_cast<QVariantMap>(message.arguments().at(2));
    QString caller = message.service().mid(1);
    request = ownPlace ? QString(kPortalPath) + "/request/elsewhere/1"
                       : QString(kPortalPath) + "/request/" + caller.replace('.', '_') + '/' +
                             options.value("handle_token").toString();
    return connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
  }

  void respond(uint response, const QStringList& uris) {
    QDBusMessage signal = QDBusMessage::createSignal(request, "org.freedesktop.portal.Request", "Response");
    signal << response << QVariantMap{{"uris", uris}};
    bus_.send(signal);
  }

  // Answers what it has kept waiting.
  void letGo() { EXPECT_TRUE(handleMessage(std::exchange(held, {}), bus_)); }
  [[nodiscard]] bool holds() const { return held.type() == QDBusMessage::MethodCallMessage; }

  bool holdsNext = false;
  QDBusMessage held;
  bool refuses = false;
  bool ownPlace = false;  // as portals did before the caller could name the place
  bool closed = false;
  QString request;
  QDBusMessage asked;
  QVariantMap options;

 private:
  const uint version_;
  QDBusConnection bus_;
  const bool ready_;
};

class PortalFolderChooserTest : public ::testing::Test {
 protected:
  PortalFolderChooserTest()
      : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "chooser")),
        chooser_(std::make_unique<PortalFolderChooser>([this](const UseBus& use) { use(bus_); },
                                                       [this] { return window_; }, other_)) {}
  ~PortalFolderChooserTest() override {
    chooser_.reset();
    QDBusConnection::disconnectFromBus("chooser");
  }
  void choose(const FolderQuestion& question) {
    chooser_->choose(question, [this](const FolderAnswer& answer) { answers_.push_back(answer); });
  }
  [[nodiscard]] bool answered(std::size_t times = 1) {
    return waitUntil([&] { return answers_.size() == times; });
  }
  // Asks, and waits until the portal has its dialog open.
  [[nodiscard]] bool opens(FakePortal& portal, const FolderQuestion& question) {
    if (!portal.isReady()) return false;
    choose(question);
    return waitUntil([&] { return portal.asked.type() == QDBusMessage::MethodCallMessage; });
  }

  QDBusConnection bus_;
  QWindow* window_ = nullptr;
  FakeFolderChooser other_;
  std::vector<FolderAnswer> answers_;
  std::unique_ptr<PortalFolderChooser> chooser_;
};

TEST_F(PortalFolderChooserTest, AsksThePortalForOneFolder) {
  FakePortal portal;
  ASSERT_TRUE(opens(portal, {.startFolder = "/pic\xFFs", .confirmLabel = "Set Directory"}));
  EXPECT_EQ(portal.asked.arguments().at(0).toString(), "");
  EXPECT_EQ(portal.asked.arguments().at(1).toString(), "Choose a Folder");
  EXPECT_TRUE(portal.options.value("directory").toBool());
  EXPECT_TRUE(portal.options.value("modal").toBool());
  EXPECT_EQ(portal.options.value("accept_label").toString(), "Set Directory");
  EXPECT_EQ(portal.options.value("current_folder").toByteArray(), QByteArray("/pic\xFFs\0", 7));
  portal.respond(PortalRequest::kSuccess, {"file:///a%20b/%FF"});
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_.front().response, 1);
  EXPECT_EQ(answers_.front().folder, "/a b/\xFF");
  EXPECT_FALSE(portal.closed);
}

TEST_F(PortalFolderChooserTest, HearsAPortalThatPutsTheRequestWhereItLikes) {
  FakePortal portal;
  portal.ownPlace = true;
  ASSERT_TRUE(opens(portal, {}));
  // Replies come in the order of the questions: after this one's the place is known.
  const QDBusPendingCall later =
      bus_.asyncCall(QDBusMessage::createMethodCall(kPortal, kPortalPath, "", "Get"));
  ASSERT_TRUE(waitUntil([&] { return later.isFinished(); }));
  runPendingEvents();
  portal.respond(PortalRequest::kSuccess, {"file:///chosen"});
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_.front().folder, "/chosen");
}

TEST_F(PortalFolderChooserTest, TakesADismissalAndNonsenseForADenial) {
  const std::vector<std::pair<uint, QStringList>> responses = {
      {PortalRequest::kDismissed, {}}, {2, {"file:///a"}},
      {PortalRequest::kSuccess, {}},   {PortalRequest::kSuccess, {"http://example.com/"}},
      {PortalRequest::kSuccess, {""}},
  };
  for (const auto& [response, uris] : responses) {
    FakePortal portal;
    answers_.clear();
    ASSERT_TRUE(opens(portal, {}));
    portal.respond(response, uris);
    ASSERT_TRUE(answered());
    EXPECT_EQ(answers_.front().response, 0);
    EXPECT_EQ(answers_.front().folder, "");
  }
}

TEST_F(PortalFolderChooserTest, AsksOneQuestionAfterTheOther) {
  FakePortal portal;
  ASSERT_TRUE(opens(portal, {}));
  choose({.confirmLabel = "Second"});
  const QString first = portal.request;
  portal.respond(PortalRequest::kSuccess, {"file:///first"});
  ASSERT_TRUE(waitUntil([&] { return portal.request != first; }));
  EXPECT_EQ(portal.options.value("accept_label").toString(), "Second");
  portal.respond(PortalRequest::kSuccess, {"file:///second"});
  ASSERT_TRUE(answered(2));
  EXPECT_EQ(answers_.at(0).folder, "/first");
  EXPECT_EQ(answers_.at(1).folder, "/second");
}

TEST_F(PortalFolderChooserTest, WaitsForAPortalThatIsSlowToStart) {
  FakePortal portal;
  portal.holdsNext = true;
  choose({});
  ASSERT_TRUE(waitUntil([&] { return portal.holds(); })) << "and the main loop turns meanwhile";
  EXPECT_TRUE(other_.asked.empty());
  portal.letGo();
  ASSERT_TRUE(waitUntil([&] { return portal.asked.type() == QDBusMessage::MethodCallMessage; }));
  portal.respond(PortalRequest::kSuccess, {"file:///late"});
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_.front().folder, "/late");
  EXPECT_TRUE(other_.asked.empty());
}

TEST_F(PortalFolderChooserTest, IsNotConfusedByAPlaceThatIsToldAfterTheAnswer) {
  FakePortal portal;
  ASSERT_TRUE(portal.isReady());
  portal.holdsNext = true;
  choose({});
  ASSERT_TRUE(waitUntil([&] { return portal.holds(); }));
  portal.letGo();
  portal.holdsNext = true;
  ASSERT_TRUE(waitUntil([&] { return portal.holds(); }));
  const QString token =
      qdbus_cast<QVariantMap>(portal.held.arguments().at(2)).value("handle_token").toString();
  portal.request =
      QString(kPortalPath) + "/request/" + portal.held.service().mid(1).replace('.', '_') + '/' + token;
  portal.respond(PortalRequest::kSuccess, {"file:///quick"});
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_.front().folder, "/quick");
  portal.letGo();
  portal.respond(PortalRequest::kSuccess, {"file:///again"});
  choose({.confirmLabel = "Second"});
  ASSERT_TRUE(waitUntil([&] { return portal.options.value("accept_label").toString() == "Second"; }));
  EXPECT_EQ(answers_.size(), 1U);
}

TEST_F(PortalFolderChooserTest, AnswersNothingThatComesAfterItsEnd) {
  FakePortal portal;
  portal.holdsNext = true;
  choose({});
  ASSERT_TRUE(waitUntil([&] { return portal.holds(); }));
  chooser_.reset();
  portal.letGo();
  const QDBusPendingCall later =
      bus_.asyncCall(QDBusMessage::createMethodCall(kPortal, kPortalPath, "", "Get"));
  ASSERT_TRUE(waitUntil([&] { return later.isFinished(); }));
  EXPECT_TRUE(answers_.empty());
  EXPECT_EQ(portal.asked.type(), QDBusMessage::InvalidMessage);
}

TEST_F(PortalFolderChooserTest, CountsAPortalThatGoesAsADenial) {
  auto portal = std::make_unique<FakePortal>();
  ASSERT_TRUE(opens(*portal, {}));
  portal.reset();
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_.front().response, 0);
}

TEST_F(PortalFolderChooserTest, TakesTheDialogBackWhenTheWindowCloses) {
  QWindow window;
  window.show();
  window_ = &window;
  FakePortal portal;
  ASSERT_TRUE(opens(portal, {}));
  window.hide();
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_.front().response, 0);
  EXPECT_TRUE(waitUntil([&] { return portal.closed; }));
}

TEST_F(PortalFolderChooserTest, TakesTheDialogBackWhenItEnds) {
  FakePortal portal;
  ASSERT_TRUE(opens(portal, {}));
  chooser_.reset();
  EXPECT_TRUE(waitUntil([&] { return portal.closed; }));
  EXPECT_TRUE(answers_.empty());
}

TEST_F(PortalFolderChooserTest, OpensNothingOverAWindowThatIsClosed) {
  QWindow window;
  window_ = &window;
  const FakePortal portal;
  ASSERT_TRUE(portal.isReady());
  choose({});
  ASSERT_TRUE(answered());
  EXPECT_EQ(portal.asked.type(), QDBusMessage::InvalidMessage);
}

// What goes to the other chooser, and comes back from it.
class WithoutPortal : public PortalFolderChooserTest {
 protected:
  void expectTheOtherIsAsked(const FolderQuestion& question) {
    choose(question);
    ASSERT_TRUE(waitUntil([&] { return !other_.asked.empty(); }));
    EXPECT_EQ(other_.asked.front().startFolder, question.startFolder);
    other_.answer({1, "/of the other"});
    ASSERT_TRUE(answered());
    EXPECT_EQ(answers_.front().folder, "/of the other");
  }
};

TEST_F(WithoutPortal, AnotherChooserIsAsked) {
  expectTheOtherIsAsked({.startFolder = "/pics"});
}

TEST_F(WithoutPortal, AnotherIsAskedWhereThePortalCannotChooseFolders) {
  const FakePortal portal(2);
  expectTheOtherIsAsked({.startFolder = "/pics"});
  EXPECT_EQ(portal.asked.type(), QDBusMessage::InvalidMessage);
}

TEST_F(WithoutPortal, AnotherIsAskedWhereThePortalRefuses) {
  FakePortal portal;
  portal.refuses = true;
  expectTheOtherIsAsked({.startFolder = "/pics"});
}

TEST_F(WithoutPortal, AnotherIsAskedWhatComesWithAMessage) {
  const FakePortal portal;
  expectTheOtherIsAsked({.message = "This is an alias."});
  EXPECT_EQ(portal.asked.type(), QDBusMessage::InvalidMessage);
}

TEST_F(WithoutPortal, AnotherIsAskedWithoutASessionBus) {
  bus_ = QDBusConnection("no such bus");
  expectTheOtherIsAsked({});
}

}  // namespace
}  // namespace lumivane

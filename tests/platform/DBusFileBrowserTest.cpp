// Under a session bus of the test's own (dbus-run-session); the file browser is in the same process, on a second
// connection.
#include "platform/linux/DBusFileBrowser.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <utility>

#include "tests/support/QtWaiting.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kName = "org.freedesktop.FileManager1";

// A file browser on the bus that keeps what it was asked.
class FakeFileManager final : public QDBusVirtualObject {
 public:
  enum class Answer { Success, Error, Never };

  FakeFileManager()
      : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "file manager")),
        ready_(bus_.registerVirtualObject("/org/freedesktop/FileManager1", this) &&
               bus_.registerService(kName)) {}
  ~FakeFileManager() override {
    bus_.unregisterService(kName);
    QDBusConnection::disconnectFromBus("file manager");
  }
  [[nodiscard]] bool isReady() const { return ready_; }

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    calls.push_back(message);
    const bool known = message.interface() == kName && message.member() == "ShowItems";
    if (answer == Answer::Success && known) connection.send(message.createReply());
    if (answer == Answer::Error || !known)
      connection.send(message.createErrorReply("org.freedesktop.DBus.Error.Failed", "no\nscreen"));
    return true;
  }

  Answer answer = Answer::Success;
  std::vector<QDBusMessage> calls;

 private:
  QDBusConnection bus_;
  const bool ready_;
};

class DBusFileBrowserTest : public ::testing::Test {
 protected:
  DBusFileBrowserTest() : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "slideshow")) {}
  void SetUp() override {
    ASSERT_TRUE(bus_.isConnected()) << "this test runs under dbus-run-session";
    browse(bus_);
  }
  ~DBusFileBrowserTest() override {
    browser_.reset();
    QDBusConnection::disconnectFromBus("slideshow");
  }
  void browse(const QDBusConnection& bus) {
    browser_ = std::make_unique<DBusFileBrowser>(
        log_,
        [this, bus](UseBus use) {
          waiting_.push_back([use = std::move(use), bus] { use(bus); });
          if (busIsOpen_) openBus();
        },
        [this](const std::string& folder) {
          folders_.push_back(folder);
          return opens_;
        });
  }
  // Hands the bus to everybody who waits for it.
  void openBus() {
    for (const auto& use : std::exchange(waiting_, {})) use();
  }
  [[nodiscard]] bool folderOpened() {
    return waitUntil([&] { return !folders_.empty(); });
  }
  // What the file manager was asked to show for the path.
  [[nodiscard]] std::string shown(FakeFileManager& manager, const std::string& path) {
    manager.calls.clear();
    browser_->selectFile(path);
    if (!waitUntil([&] { return !manager.calls.empty(); })) return "nothing";
    if (manager.calls.front().signature() != "ass") return "another signature";
    const QStringList uris = manager.calls.front().arguments().at(0).toStringList();
    EXPECT_EQ(uris.size(), 1);
    EXPECT_EQ(manager.calls.front().arguments().at(1).toString(), "");
    return uris.join("|").toStdString();
  }

  RecordingLog log_;
  QDBusConnection bus_;
  bool busIsOpen_ = true;
  std::vector<std::function<void()>> waiting_;
  bool opens_ = true;
  std::vector<std::string> folders_;
  std::unique_ptr<DBusFileBrowser> browser_;
};

TEST_F(DBusFileBrowserTest, ShowsTheVeryFile) {
  FakeFileManager manager;
  ASSERT_TRUE(manager.isReady());
  EXPECT_EQ(shown(manager, "/pics/a.jpg"), "file:///pics/a.jpg");
  EXPECT_EQ(shown(manager, "/my pics/K\xC3\xB6ln #1%.jpg"), "file:///my%20pics/K%C3%B6ln%20%231%25.jpg");
  EXPECT_EQ(shown(manager, "/two\nlines.jpg"), "file:///two%0Alines.jpg");
  EXPECT_EQ(shown(manager, "/\xFF\xFE/\x80.jpg"), "file:///%FF%FE/%80.jpg");
  EXPECT_EQ(shown(manager, "/50%25.jpg"), "file:///50%2525.jpg");
  EXPECT_THAT(folders_, IsEmpty());
  EXPECT_THAT(log_.entries(), IsEmpty());
}

TEST_F(DBusFileBrowserTest, ShowsSeveralFilesInTurn) {
  FakeFileManager manager;
  ASSERT_TRUE(manager.isReady());
  browser_->selectFile("/one/a.jpg");
  browser_->selectFile("/two/b.jpg");
  ASSERT_TRUE(waitUntil([&] { return manager.calls.size() == 2; }));
  EXPECT_EQ(manager.calls[0].arguments().at(0).toStringList(), QStringList("file:///one/a.jpg"));
  EXPECT_EQ(manager.calls[1].arguments().at(0).toStringList(), QStringList("file:///two/b.jpg"));
}

TEST_F(DBusFileBrowserTest, OpensTheFolderWhereThereIsNoSuchService) {
  browser_->selectFile("/pics/\xFF/a\n.jpg");
  ASSERT_TRUE(folderOpened());
  EXPECT_THAT(folders_, ElementsAre("/pics/\xFF"));
  ASSERT_EQ(log_.entries().size(), 1U);
  EXPECT_THAT(log_.entries()[0].text,
              ::testing::StartsWith("No file browser selects files (org.freedesktop.DBus.Error."
                                    "ServiceUnknown: "));
  EXPECT_THAT(log_.entries()[0].text, ::testing::EndsWith("opening the folder /pics/\\xFF."));
}

TEST_F(DBusFileBrowserTest, OpensTheFolderWhenTheServiceRefuses) {
  FakeFileManager manager;
  ASSERT_TRUE(manager.isReady());
  manager.answer = FakeFileManager::Answer::Error;
  browser_->selectFile("/a.jpg");
  ASSERT_TRUE(folderOpened());
  EXPECT_THAT(folders_, ElementsAre("/"));
  EXPECT_EQ(
      log_.count(
          "No file browser selects files (org.freedesktop.DBus.Error.Failed: no\\x0Ascreen); opening the "
          "folder /."),
      1U);
}

TEST_F(DBusFileBrowserTest, OpensTheFolderWithoutABus) {
  browse(QDBusConnection("no such bus"));
  browser_->selectFile("/pics/a.jpg");
  ASSERT_TRUE(folderOpened());
  EXPECT_THAT(folders_, ElementsAre("/pics"));
  EXPECT_EQ(log_.entries().size(), 1U);
}

TEST_F(DBusFileBrowserTest, WaitsForABusThatOpensLate) {
  FakeFileManager manager;
  ASSERT_TRUE(manager.isReady());
  busIsOpen_ = false;
  browser_->selectFile("/pics/a.jpg");
  browser_->selectFile("/pics/b.jpg");
  runPendingEvents();
  EXPECT_THAT(manager.calls, IsEmpty());
  openBus();
  ASSERT_TRUE(waitUntil([&] { return manager.calls.size() == 2; }));
  EXPECT_EQ(manager.calls[1].arguments().at(0).toStringList(), QStringList("file:///pics/b.jpg"));
}

TEST_F(DBusFileBrowserTest, ABusThatOpensAfterItsEndIsNotAsked) {
  FakeFileManager manager;
  ASSERT_TRUE(manager.isReady());
  busIsOpen_ = false;
  browser_->selectFile("/early/a.jpg");
  browse(bus_);
  openBus();
  busIsOpen_ = true;
  EXPECT_EQ(shown(manager, "/late/b.jpg"), "file:///late/b.jpg");
  EXPECT_EQ(manager.calls.size(), 1U);
}

TEST_F(DBusFileBrowserTest, OpensTheFolderWhenTheServiceGoesBeforeItAnswers) {
  auto manager = std::make_unique<FakeFileManager>();
  ASSERT_TRUE(manager->isReady());
  manager->answer = FakeFileManager::Answer::Never;
  browser_->selectFile("/pics/a.jpg");
  ASSERT_TRUE(waitUntil([&] { return !manager->calls.empty(); }));
  EXPECT_THAT(folders_, IsEmpty());
  manager.reset();
  ASSERT_TRUE(folderOpened());
  EXPECT_THAT(folders_, ElementsAre("/pics"));
}

TEST_F(DBusFileBrowserTest, TellsWhenNoProgramOpensFolders) {
  opens_ = false;
  browser_->selectFile("/pics/a.jpg");
  ASSERT_TRUE(folderOpened());
  EXPECT_TRUE(log_.has("No program opens the folder /pics.", LogLevel::Error));
}

TEST_F(DBusFileBrowserTest, AnAnswerAfterItsEndIsDropped) {
  auto manager = std::make_unique<FakeFileManager>();
  ASSERT_TRUE(manager->isReady());
  manager->answer = FakeFileManager::Answer::Never;
  browser_->selectFile("/early/a.jpg");
  browse(bus_);
  browser_->selectFile("/late/b.jpg");
  ASSERT_TRUE(waitUntil([&] { return manager->calls.size() == 2; }));
  manager.reset();  // which answers both with an error
  ASSERT_TRUE(folderOpened());
  runPendingEvents();
  EXPECT_THAT(folders_, ElementsAre("/late"));
  EXPECT_EQ(log_.entries().size(), 1U);
}

TEST_F(DBusFileBrowserTest, TakesAbsolutePathsOnly) {
  FakeFileManager manager;
  ASSERT_TRUE(manager.isReady());
  browser_->selectFile("a\n.jpg");
  browser_->selectFile("");
  EXPECT_EQ(shown(manager, "/pics/a.jpg"), "file:///pics/a.jpg");
  EXPECT_EQ(manager.calls.size(), 1U);
  EXPECT_THAT(folders_, IsEmpty());
  EXPECT_TRUE(log_.has("The file browser cannot show a\\x0A.jpg: not an absolute path.", LogLevel::Error));
}

}  // namespace
}  // namespace lumivane

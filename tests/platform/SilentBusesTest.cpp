#include "platform/linux/SilentBuses.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/linux/FileDescriptor.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

constexpr std::chrono::milliseconds kShort{30};
constexpr std::chrono::seconds kPlenty{30};

struct SilentBusesTest : testing::Test {
  TemporaryFolder folder;
  RecordingLog log;
  FileDescriptor silent;

  // A bus that takes clients and never says a word.
  std::string silentBus() {
    const std::string path = folder / "silent";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    silent = FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(bind(silent.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(silent.get(), 8), 0);
    return "unix:path=" + path;
  }
};

TEST_F(SilentBusesTest, ASilentBusDoesNotAnswer) {
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_FALSE(busAnswers(silentBus(), kShort));
  EXPECT_GE(std::chrono::steady_clock::now() - begun, kShort);
}

TEST_F(SilentBusesTest, WhatFailsAtOnceNeedsNoPatience) {
  EXPECT_TRUE(busAnswers("unix:path=/nowhere/at/all", kPlenty));
  EXPECT_TRUE(busAnswers("unix:path=" + folder.write("file", "x"), kPlenty));
  EXPECT_TRUE(busAnswers("nonsense", kPlenty));
  EXPECT_TRUE(busAnswers("", kPlenty));
  EXPECT_TRUE(busAnswers("disabled:", kPlenty));
}

TEST_F(SilentBusesTest, ABusThatHangsUpHasAnswered) {
  const std::string address = silentBus();
  const pid_t server = fork();
  if (server == 0) {
    const int client = accept(silent.get(), nullptr, nullptr);
    _exit(close(client));
  }
  EXPECT_TRUE(busAnswers(address, kPlenty));
  waitpid(server, nullptr, 0);
}

TEST_F(SilentBusesTest, IsLeftOutOfTheEnvironment) {
  const std::string address = silentBus();
  Environment environment{{"DBUS_SESSION_BUS_ADDRESS", address},
                          {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere"},
                          {"HOME", "/home/me"}};
  leaveOutSilentBuses(environment, log, kShort);
  EXPECT_EQ(environment["DBUS_SESSION_BUS_ADDRESS"], "unix:path=/dev/null/no-bus");
  EXPECT_STREQ(getenv("DBUS_SESSION_BUS_ADDRESS"), "unix:path=/dev/null/no-bus");
  EXPECT_EQ(environment["DBUS_SYSTEM_BUS_ADDRESS"], "unix:path=/nowhere");
  EXPECT_EQ(environment["HOME"], "/home/me");
  EXPECT_TRUE(log.has("The message bus at " + address + " does not answer; the show does without it.",
                      LogLevel::Error));
  EXPECT_EQ(log.entries().size(), 1U);
}

TEST_F(SilentBusesTest, IsLookedForWhereItUsuallyIs) {
  std::filesystem::rename(silentBus().substr(10), folder / "bus");
  Environment environment{{"XDG_RUNTIME_DIR", folder.path()},
                          {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere"}};
  leaveOutSilentBuses(environment, log, kShort);
  EXPECT_EQ(environment["DBUS_SESSION_BUS_ADDRESS"], "unix:path=/dev/null/no-bus");
}

}  // namespace
}  // namespace lumivane

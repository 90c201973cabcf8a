#include "platform/linux/DisplayServer.h"

#include <sys/socket.h>
#include <sys/un.h>

#include "platform/linux/FileDescriptor.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

class DisplayServerTest : public ::testing::Test {
 protected:
  // Something that takes connections, as a compositor does.
  FileDescriptor listenAt(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    FileDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(bind(listener.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(listener.get(), 4), 0);
    return listener;
  }
  TemporaryFolder folder_;
};

TEST_F(DisplayServerTest, NoneWithoutVariables) {
  EXPECT_FALSE(displayServerReachable({}));
  EXPECT_FALSE(displayServerReachable({{"WAYLAND_DISPLAY", ""}, {"DISPLAY", ""}}));
}

TEST_F(DisplayServerTest, FindsTheWaylandSocket) {
  const FileDescriptor listener = listenAt(folder_ / "wayland-7");
  EXPECT_TRUE(
      displayServerReachable({{"WAYLAND_DISPLAY", "wayland-7"}, {"XDG_RUNTIME_DIR", folder_.path()}}));
  EXPECT_TRUE(displayServerReachable({{"WAYLAND_DISPLAY", folder_ / "wayland-7"}}));
  EXPECT_FALSE(displayServerReachable({{"WAYLAND_DISPLAY", "wayland-7"}}));
  EXPECT_FALSE(
      displayServerReachable({{"WAYLAND_DISPLAY", "wayland-8"}, {"XDG_RUNTIME_DIR", folder_.path()}}));
}

TEST_F(DisplayServerTest, ASessionOfWaylandHasADefaultSocket) {
  const FileDescriptor listener = listenAt(folder_ / "wayland-0");
  EXPECT_TRUE(displayServerReachable({{"XDG_SESSION_TYPE", "wayland"}, {"XDG_RUNTIME_DIR", folder_.path()}}));
  EXPECT_FALSE(displayServerReachable({{"XDG_SESSION_TYPE", "tty"}, {"XDG_RUNTIME_DIR", folder_.path()}}));
}

TEST_F(DisplayServerTest, ASocketThatIsLeftOverDoesNotAnswer) {
  { const FileDescriptor listener = listenAt(folder_ / "wayland-0"); }
  EXPECT_TRUE(std::filesystem::exists(folder_ / "wayland-0"));
  EXPECT_FALSE(displayServerReachable({{"WAYLAND_DISPLAY", folder_ / "wayland-0"}}));
}

TEST_F(DisplayServerTest, NonsenseDoesNotAnswer) {
  EXPECT_FALSE(displayServerReachable({{"DISPLAY", ":64999"}}));
  EXPECT_FALSE(displayServerReachable({{"DISPLAY", "nonsense"}}));
  EXPECT_FALSE(displayServerReachable({{"WAYLAND_DISPLAY", "/" + std::string(500, 'x')}}));
}

TEST_F(DisplayServerTest, OnlyTheWantedPlatformCounts) {
  const FileDescriptor listener = listenAt(folder_ / "w");
  const Environment wayland{{"WAYLAND_DISPLAY", folder_ / "w"}};
  const auto with = [&](const char* platform) {
    Environment environment = wayland;
    environment["QT_QPA_PLATFORM"] = platform;
    return displayServerReachable(environment);
  };
  EXPECT_TRUE(with("wayland"));
  EXPECT_TRUE(with("wayland-egl"));
  EXPECT_FALSE(with("xcb"));
  EXPECT_TRUE(with("xcb;wayland"));
  EXPECT_TRUE(with("offscreen"));
  EXPECT_TRUE(with("minimal:option=1"));
  EXPECT_FALSE(with("nonsense"));
}

}  // namespace
}  // namespace lumivane

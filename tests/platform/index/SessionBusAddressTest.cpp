#include "platform/linux/index/SessionBusAddress.h"

#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.h"

namespace lumivane {
namespace {

TEST(SessionBusAddress, IsTheOneOfTheEnvironment) {
  MemoryFiles files;
  files.content["/run/me/bus"] = "";
  EXPECT_EQ(sessionBusAddress({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/x"}, {"XDG_RUNTIME_DIR", "/run/me"}},
                              files),
            "unix:path=/x");
}

TEST(SessionBusAddress, IsElseTheSocketOfTheSession) {
  MemoryFiles files;
  files.content["/run/my self/bus"] = "";
  EXPECT_EQ(sessionBusAddress({{"XDG_RUNTIME_DIR", "/run/my self"}}, files), "unix:path=/run/my%20self/bus");
}

TEST(SessionBusAddress, IsEmptyWhereThereIsNone) {
  MemoryFiles files;
  files.content["run/bus"] = files.content["/bus"] = "";
  EXPECT_EQ(sessionBusAddress({}, files), "");
  EXPECT_EQ(sessionBusAddress({{"XDG_RUNTIME_DIR", "/run/me"}}, files), "");
  EXPECT_EQ(sessionBusAddress({{"XDG_RUNTIME_DIR", "run"}}, files), "");
}

}  // namespace
}  // namespace lumivane

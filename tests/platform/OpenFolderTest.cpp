// On an X server (xvfb-run): only there Qt looks for a program that opens folders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/linux/DBusFileBrowser.h"
#include "tests/support/QtWaiting.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

TEST(OpenFolderOnDesktop, HandsTheVeryFolderToTheDesktopsProgram) {
  const TemporaryFolder folder;
  const std::string asked = folder / "asked";
  const std::string program = folder.write("xdg-open", "#!/bin/sh\nprintf '%s\\n' \"$@\" >" + asked +
                                                           ".new\nmv " + asked + ".new " + asked + "\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  qunsetenv("XDG_CURRENT_DESKTOP");
  qputenv("PATH", QByteArray::fromStdString(folder.path()) + ":" + qgetenv("PATH"));
  for (const auto& [path, uri] :
       {std::pair("/my pics/K\xC3\xB6ln #1%", "file:///my%20pics/K%C3%B6ln%20%231%25\n"),
        std::pair("/\xFF\n\"a\" & 'b'", "file:///%FF%0A%22a%22%20&%20'b'\n"),
        std::pair("/$(id);`id`", "file:///$(id)%3B%60id%60\n")}) {
    std::filesystem::remove(asked);
    EXPECT_TRUE(openFolderOnDesktop(path));
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(asked); }));
    EXPECT_EQ(contentOf(asked), uri);
  }
}

TEST(OpenFolderOnDesktop, TakesAbsolutePathsOnly) {
  EXPECT_FALSE(openFolderOnDesktop("pics"));
  EXPECT_FALSE(openFolderOnDesktop(""));
}

}  // namespace
}  // namespace lumivane

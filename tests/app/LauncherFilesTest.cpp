#include "app/LauncherFiles.h"

#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

struct LauncherFilesTest : testing::Test {
  const std::string request = "/state/K7Q4MZ2R9T.de.orvik.LumivaneGroup/LumivaneApp-Auto-Launcher.flags";
  const std::string alive = "/state/K7Q4MZ2R9T.de.orvik.LumivaneGroup/LumivaneApp.flags";
  const WallTime now = WallTime(std::chrono::seconds(1'800'000'000));
  MemoryFiles files;
  RecordingLog log;
  LauncherFiles launcher{files, log, "/state"};

  LaunchFlags take(const std::string& content, std::chrono::milliseconds age) {
    files.content[request] = content;
    files.modified[request] = now - age;
    LaunchFlags flags;
    launcher.takeRequest(flags, now);
    return flags;
  }
};

TEST_F(LauncherFilesTest, aFreshRequestIsHonouredAndRemoved) {
  const LaunchFlags flags = take("-s", std::chrono::seconds(3));
  EXPECT_TRUE(flags.fullScreen);
  EXPECT_TRUE(flags.surrogate);
  EXPECT_FALSE(files.exists(request));
  EXPECT_TRUE(log.has("Removing flags file " + request, LogLevel::Information));
}

TEST_F(LauncherFilesTest, aStaleRequestIsRemovedInSilence) {
  EXPECT_FALSE(take("-s", std::chrono::seconds(12)).fullScreen);
  EXPECT_FALSE(files.exists(request));
  EXPECT_EQ(log.entries().size(), 1U);
}

TEST_F(LauncherFilesTest, tenSecondsAreTooOld) {
  EXPECT_FALSE(take("-f", std::chrono::seconds(10)).fullScreen);
  EXPECT_TRUE(take("-f", std::chrono::milliseconds(9999)).fullScreen);
}

TEST_F(LauncherFilesTest, aLineFeedMakesAnUnknownFlag) {
  EXPECT_FALSE(take("-f\n", std::chrono::seconds(1)).fullScreen);
  EXPECT_TRUE(log.has("Unknown flag (-f\\x0A)!", LogLevel::Error));
  EXPECT_FALSE(files.exists(request));
}

TEST_F(LauncherFilesTest, aRequestAddsToOtherFlags) {
  LaunchFlags flags = take("-s", std::chrono::seconds(1));
  addOrLog(flags, "-f", log);
  EXPECT_TRUE(flags.fullScreen);
  EXPECT_TRUE(flags.surrogate);
}

TEST_F(LauncherFilesTest, anUnreadableRequestIsRemovedAllTheSame) {
  files.unreadable.insert(request);
  EXPECT_FALSE(take("-f", std::chrono::seconds(1)).fullScreen);
  EXPECT_TRUE(log.has("Reading flags file " + request + " failed! error = " + request + ": Permission denied",
                      LogLevel::Error));
  EXPECT_FALSE(files.exists(request));
}

TEST_F(LauncherFilesTest, bytesThatAreNoTextAreUnreadable) {
  take("\xFF\xFE", std::chrono::seconds(1));
  EXPECT_EQ(log.countStartingWith("Reading flags file " + request + " failed! error = "), 1U);
}

TEST_F(LauncherFilesTest, aRequestWithoutATimeIsDropped) {
  files.undated.insert(request);
  EXPECT_FALSE(take("-f", std::chrono::seconds(1)).fullScreen);
  EXPECT_EQ(log.countStartingWith("Retrieving modification date of " + request + " failed! error = "), 1U);
  EXPECT_FALSE(files.exists(request));
}

TEST_F(LauncherFilesTest, aRequestThatStaysIsLogged) {
  files.unremovable.insert(request);
  EXPECT_TRUE(take("-f", std::chrono::seconds(1)).fullScreen);
  EXPECT_TRUE(log.has("Failed with error = " + request + ": Operation not permitted!", LogLevel::Error));
}

TEST_F(LauncherFilesTest, withoutARequestNothingIsSaid) {
  LaunchFlags flags;
  launcher.takeRequest(flags, now);
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(LauncherFilesTest, theAliveFileHoldsTheTimeOfLaunchUntilTheEnd) {
  launcher.writeAliveFile(now);
  EXPECT_EQ(files.content[alive], "2027-01-15 08:00:00 +0000");
  launcher.removeAliveFile();
  EXPECT_FALSE(files.exists(alive));
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(LauncherFilesTest, anAliveFileThatCannotBeWrittenIsLogged) {
  files.unwritable.insert(alive);
  launcher.writeAliveFile(now);
  EXPECT_TRUE(log.has("Failed to write LumivaneApp.flags (" + alive +
                          ") in group container! error = " + alive + ": No space left on device",
                      LogLevel::Error));
  launcher.removeAliveFile();
}

TEST_F(LauncherFilesTest, withoutAStateFolderBothFilesAreOff) {
  LauncherFiles homeless{files, log, ""};
  LaunchFlags flags;
  homeless.takeRequest(flags, now);
  EXPECT_TRUE(log.has("Failed to create app group container URL: (null)!", LogLevel::Error));
  homeless.writeAliveFile(now);
  EXPECT_EQ(log.countStartingWith("Failed to write LumivaneApp.flags ((null)) in group container! error = "),
            1U);
  homeless.removeAliveFile();
}

}  // namespace
}  // namespace lumivane

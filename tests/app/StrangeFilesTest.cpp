// Whatever stands where a file of our own belongs: nothing blocks, nothing ends the program, the log says what is the
// matter, and nothing that somebody may still want is overwritten.
#include <sys/stat.h>

#include <filesystem>

#include "app/LauncherFiles.h"
#include "app/WindowPlace.h"
#include "collection/ImageListFile.h"
#include "engine/LastRunRecord.h"
#include "platform/linux/PosixFiles.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

enum class Strange { Empty, Truncated, Binary, Huge, Folder, Fifo, Ring, Device };

const WallTime kNow{std::chrono::seconds(1'800'000'000)};

class StrangeFiles : public testing::TestWithParam<Strange> {
 protected:
  // Puts it there. What is cut off in the middle is a property list.
  void put(const std::string& path) const {
    fs::create_directories(fs::path(path).parent_path());
    switch (GetParam()) {
      case Strange::Empty:
        return write(path, "");
      case Strange::Truncated:
        return write(path,
                     "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>ImageIndex</key><inte\xFF");
      case Strange::Binary:
        return write(path, std::string("bplist00\xFF\x00\xD1\x80", 12) + std::string(5000, '\xFE'));
      case Strange::Huge:
        write(path, "\xFF");
        return fs::resize_file(path, std::uintmax_t{1} << 33);  // with a hole in it
      case Strange::Folder:
        fs::create_directory(path);
        return write(path + "/kept", "kept");
      case Strange::Fifo:
        ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
        return;
      case Strange::Ring:
        return fs::create_symlink(fs::path(path).filename(), path);
      case Strange::Device:
        return fs::create_symlink("/dev/zero", path);
    }
  }
  static void write(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
  }
  // What stands at a path, as far as it can be told without opening it.
  [[nodiscard]] static std::string what(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) return "nothing";
    return std::to_string(status.st_mode & S_IFMT) + " " + std::to_string(status.st_ino) + " " +
           std::to_string(S_ISDIR(status.st_mode) ? 0 : status.st_size);
  }
  [[nodiscard]] static bool isFileContent() {
    return GetParam() == Strange::Empty || GetParam() == Strange::Truncated ||
           GetParam() == Strange::Binary || GetParam() == Strange::Huge;
  }

  TemporaryFolder folder_;
  PosixFiles files_;
  RecordingLog log_;
};

TEST_P(StrangeFiles, AsListGiveAnEmptyListAndAreTold) {
  const std::string path = folder_ / "data/LumivaneImageList.screen.plist";
  put(path);
  const std::string before = what(path);
  EXPECT_TRUE(loadImageList(files_, path, log_).empty());
  const bool told = log_.countStartingWith("load images failed: ") == 1;
  EXPECT_EQ(told, GetParam() != Strange::Empty) << "an empty file is an empty list";
  EXPECT_EQ(what(path), before) << "reading changes nothing";
  saveImageList(files_, path, {"/a.jpg"}, log_);
  if (isFileContent()) {
    EXPECT_EQ(loadImageList(files_, path, log_), ImageList{"/a.jpg"});
  } else {
    EXPECT_EQ(what(path), before) << "what is no file is not replaced by one";
    EXPECT_EQ(log_.countStartingWith("saving image list failed: "), 1U);
  }
}

TEST_P(StrangeFiles, AsRecordAreToldAndLeftAlone) {
  const std::string path = folder_ / "data/LumivaneLastRunInfo.screen.plist";
  put(path);
  const std::string before = what(path);
  LastRunRecord record{files_, log_};
  EXPECT_FALSE(record.loadLastRunInfo(path, {3, kNow}));
  EXPECT_EQ(log_.countStartingWith("Could not read LastRunInfo from " + path + "!\nerror: "), 1U);
  record.saveLastRunInfo({5, kNow});
  EXPECT_TRUE(log_.has("lastRunInfoPath_ or lastRunInfo_ = nil!", LogLevel::Error));
  EXPECT_EQ(what(path), before);
}

TEST_P(StrangeFiles, AsWindowPlaceGiveNone) {
  const std::string path = folder_ / "lumivane/de.orvik.LumivaneApp.window.plist";
  put(path);
  const std::string before = what(path);
  WindowPlace place{files_, log_, folder_.path()};
  EXPECT_FALSE(place.load());
  EXPECT_EQ(log_.countStartingWith("The window's place in " + path + " cannot be used: "), 1U);
  place.save({{10, 20}, {300, 200}});
  if (isFileContent()) {
    WindowPlace again{files_, log_, folder_.path()};
    EXPECT_TRUE(again.load());
  } else {
    EXPECT_EQ(what(path), before);
    EXPECT_EQ(log_.countStartingWith("The window's place was not saved: "), 1U);
  }
}

TEST_P(StrangeFiles, AsRequestAskForNothingAndAreCleared) {
  const std::string container = folder_ / "K7Q4MZ2R9T.de.orvik.LumivaneGroup";
  const std::string path = container + "/LumivaneApp-Auto-Launcher.flags";
  put(path);
  LaunchFlags flags;
  LauncherFiles launcher{files_, log_, folder_.path()};
  launcher.takeRequest(flags,
                       std::chrono::time_point_cast<WallTime::duration>(std::chrono::system_clock::now()));
  EXPECT_FALSE(flags.fullScreen);
  EXPECT_FALSE(flags.surrogate);
  EXPECT_TRUE(log_.has("Removing flags file " + path, LogLevel::Information));
  if (GetParam() == Strange::Folder) {
    EXPECT_EQ(log_.countStartingWith("Failed with error = "), 1U);
    EXPECT_TRUE(fs::exists(path + "/kept"));
  } else {
    EXPECT_EQ(what(path), "nothing");
  }
}

TEST_P(StrangeFiles, AsAliveFileDoNotStopTheStart) {
  const std::string path = folder_ / "K7Q4MZ2R9T.de.orvik.LumivaneGroup/LumivaneApp.flags";
  put(path);
  LauncherFiles launcher{files_, log_, folder_.path()};
  launcher.writeAliveFile(kNow);
  EXPECT_EQ(log_.countStartingWith("Failed to write LumivaneApp.flags (" + path + ")"),
            isFileContent() ? 0U : 1U);
  launcher.removeAliveFile();
  EXPECT_EQ(what(path) == "nothing", GetParam() != Strange::Folder);
}

std::string nameOf(const testing::TestParamInfo<Strange>& info) {
  constexpr std::array kNames = {"Empty", "Truncated", "Binary", "Huge", "Folder", "Fifo", "Ring", "Device"};
  return kNames.at(static_cast<std::size_t>(info.param));
}

INSTANTIATE_TEST_SUITE_P(Kinds, StrangeFiles,
                         testing::Values(Strange::Empty, Strange::Truncated, Strange::Binary, Strange::Huge,
                                         Strange::Folder, Strange::Fifo, Strange::Ring, Strange::Device),
                         nameOf);

}  // namespace
}  // namespace lumivane

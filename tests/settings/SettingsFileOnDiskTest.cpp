// Settings files that are something else on the disk than they should be.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/linux/PosixFiles.h"
#include "settings/PreferencesStore.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

class SettingsFileOnDisk : public testing::Test {
 protected:
  ~SettingsFileOnDisk() override { fs::remove_all(folder_); }

  [[nodiscard]] DisplaySettings load() { return preferences_.load("Color LCD"); }
  [[nodiscard]] bool saved() const {
    return fs::is_regular_file(path_) && log_.countStartingWith("writing defaults failed!") == 0;
  }

  [[nodiscard]] static fs::path makeFolder() {
    std::string pattern = (fs::temp_directory_path() / "lumivane-settings-XXXXXX").string();
    return ::mkdtemp(pattern.data());
  }

  PosixFiles files_;
  RecordingLog log_;
  const fs::path folder_ = makeFolder();
  const fs::path path_ = folder_ / "deep" / "de.orvik.LumivaneApp.Color LCD.plist";
  const fs::path damaged_ = path_.string() + ".damaged";
  SettingsStore store_{files_, log_, (folder_ / "deep").string()};
  PreferencesStore preferences_{store_, log_};
};

TEST_F(SettingsFileOnDisk, OnlyTheUserCanReadIt) {
  DisplaySettings settings = load();
  EXPECT_FALSE(fs::exists(path_));
  settings.fontSize_ = 33;
  EXPECT_TRUE(preferences_.save(settings));
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(load().fontSize_, 33U);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "deep"), {}), 1);
}

TEST_F(SettingsFileOnDisk, AFolderInItsPlaceIsLeftAlone) {
  fs::create_directories(path_);
  const DisplaySettings settings = load();
  EXPECT_EQ(settings.durationPerImage_, 60);
  EXPECT_EQ(log_.countStartingWith("settings file cannot be used: " + path_.string()), 1U);
  log_.clear();
  EXPECT_FALSE(preferences_.save(settings));
  EXPECT_EQ(log_.count("writing defaults failed! (display name = Color LCD)"), 1U);
  EXPECT_TRUE(fs::is_directory(path_));
  EXPECT_FALSE(fs::exists(damaged_));
}

TEST_F(SettingsFileOnDisk, APipeInItsPlaceBlocksNothing) {
  fs::create_directories(path_.parent_path());
  ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  const DisplaySettings settings = load();
  EXPECT_EQ(settings.durationPerImage_, 60);
  EXPECT_TRUE(preferences_.save(settings));
  EXPECT_TRUE(saved());
  EXPECT_TRUE(fs::is_fifo(damaged_));
}

TEST_F(SettingsFileOnDisk, ALinkToItselfIsLeftAlone) {
  fs::create_directories(path_.parent_path());
  fs::create_symlink(path_.filename(), path_);
  const DisplaySettings settings = load();
  EXPECT_EQ(settings.durationPerImage_, 60);
  EXPECT_FALSE(preferences_.save(settings));
  EXPECT_EQ(log_.countStartingWith("settings not written: " + path_.string()), 1U);
  EXPECT_TRUE(fs::is_symlink(path_));
}

TEST_F(SettingsFileOnDisk, EndlessBytesInItsPlaceAreNotRead) {
  fs::create_directories(path_.parent_path());
  fs::create_symlink("/dev/zero", path_);
  const DisplaySettings settings = load();
  EXPECT_EQ(settings.durationPerImage_, 60);
  EXPECT_TRUE(preferences_.save(settings));
  EXPECT_TRUE(saved());
  EXPECT_EQ(fs::read_symlink(damaged_), "/dev/zero");
}

TEST_F(SettingsFileOnDisk, AHugeFileIsNotRead) {
  fs::create_directories(path_.parent_path());
  std::ofstream(path_).put('<');
  fs::resize_file(path_, std::uintmax_t{1} << 32);
  const DisplaySettings settings = load();
  EXPECT_EQ(settings.durationPerImage_, 60);
  EXPECT_TRUE(preferences_.save(settings));
  EXPECT_TRUE(saved());
  EXPECT_EQ(fs::file_size(damaged_), std::uintmax_t{1} << 32);
}

TEST_F(SettingsFileOnDisk, AFileThatMayNotBeReadIsKept) {
  if (::geteuid() == 0) GTEST_SKIP() << "nothing is forbidden to the superuser";
  fs::create_directories(path_.parent_path());
  std::ofstream(path_) << "secret";
  fs::permissions(path_, fs::perms::none);
  EXPECT_TRUE(preferences_.save(load()));
  EXPECT_TRUE(saved());
  EXPECT_EQ(fs::file_size(damaged_), 6U);
}

TEST_F(SettingsFileOnDisk, AFolderThatCannotBeMadeFailsTheFlush) {
  std::ofstream(folder_ / "deep") << "in the way";
  const DisplaySettings settings = load();
  EXPECT_EQ(settings.durationPerImage_, 60);
  EXPECT_FALSE(preferences_.save(settings));
  EXPECT_EQ(log_.count("writing defaults failed! (display name = Color LCD)"), 1U);
}

}  // namespace
}  // namespace lumivane

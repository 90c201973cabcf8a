#include "platform/linux/PosixFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <thread>

#include "platform/linux/FileDescriptor.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

constexpr std::size_t kPlenty = 1024 * 1024;

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename());
  return names;
}

mode_t permissionsOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

// Makes this thread alone an ordinary user, to whom permissions matter, for as long as it lives.
class AsOrdinaryUser {
 public:
  AsOrdinaryUser() { changed_ = geteuid() != 0 || syscall(SYS_setresuid, -1, kNobody, -1) == 0; }
  ~AsOrdinaryUser() {
    if (getuid() == 0) syscall(SYS_setresuid, -1, 0, -1);
  }
  [[nodiscard]] bool changed() const { return changed_; }

 private:
  static constexpr int kNobody = 65534;
  bool changed_ = false;
};

class PosixFilesTest : public ::testing::Test {
 protected:
  TemporaryFolder folder_;
  PosixFiles files_;
};

TEST_F(PosixFilesTest, ReadsBackWhatItWrote) {
  const std::string content("a\0b\r\n\xFF", 6);
  ASSERT_TRUE(files_.writeAtomically(folder_ / "f", content).ok());
  EXPECT_EQ(files_.read(folder_ / "f", kPlenty).value(), content);
  ASSERT_TRUE(files_.writeAtomically(folder_ / "f", "").ok());
  EXPECT_EQ(files_.read(folder_ / "f", kPlenty).value(), "");
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("f"));
}

TEST_F(PosixFilesTest, TakesALargeContentWhole) {
  const std::string content(5'000'000, 'x');
  ASSERT_TRUE(files_.writeAtomically(folder_ / "f", content).ok());
  EXPECT_EQ(files_.read(folder_ / "f", content.size()).value(), content);
}

TEST_F(PosixFilesTest, RefusesAFileThatIsTooLarge) {
  const std::string path = folder_.write("f", "12345");
  EXPECT_TRUE(files_.read(path, 5).ok());
  EXPECT_EQ(files_.read(path, 4).error(), path + ": larger than 4 bytes");
  // Its size is said to be 0, yet there is something in it.
  EXPECT_THAT(files_.read("/proc/self/status", 10).error(), EndsWith(": larger than 10 bytes"));
  EXPECT_THAT(files_.read("/proc/self/status", kPlenty).value(), HasSubstr("Name:"));
}

TEST_F(PosixFilesTest, NamesPathAndReasonInErrors) {
  EXPECT_EQ(files_.read(folder_ / "none", kPlenty).error(), folder_ / "none: No such file or directory");
  EXPECT_EQ(files_.read(folder_ / "a\nb", kPlenty).error(), folder_ / "a\\x0Ab: No such file or directory");
  EXPECT_EQ(files_.read(folder_.path(), kPlenty).error(), folder_.path() + ": Is a directory");
}

TEST_F(PosixFilesTest, NeverWaitsForAFifo) {
  const std::string fifo = folder_ / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_EQ(files_.read(fifo, kPlenty).error(), fifo + ": not a regular file");
  EXPECT_EQ(files_.probeForUpdating(fifo).error(), fifo + ": not a regular file");
  EXPECT_EQ(files_.writeAtomically(fifo, "x").error(), fifo + ": not a regular file");
  EXPECT_TRUE(std::filesystem::is_fifo(fifo));
  EXPECT_EQ(files_.read("/dev/zero", kPlenty).error(), "/dev/zero: not a regular file");
}

TEST_F(PosixFilesTest, RefusesWhatIsNoFileName) {
  const std::string cutOff("f\0g", 3);
  const std::string path = folder_ / cutOff;
  EXPECT_FALSE(files_.exists(path));
  EXPECT_THAT(files_.read(path, kPlenty).error(), EndsWith("f\\x00g: not a file name"));
  EXPECT_THAT(files_.writeAtomically(path, "x").error(), EndsWith(": not a file name"));
  EXPECT_THAT(files_.rename(path, folder_ / "h").error(), EndsWith(": not a file name"));
  EXPECT_FALSE(files_.writeAtomically("", "x").ok());
  EXPECT_FALSE(files_.writeAtomically(folder_.path() + "/", "x").ok());
  EXPECT_THAT(namesIn(folder_.path()), IsEmpty());
}

TEST_F(PosixFilesTest, TellsWhetherSomethingIsThere) {
  EXPECT_TRUE(files_.exists(folder_.path()));
  EXPECT_FALSE(files_.exists(folder_ / "none"));
  ASSERT_EQ(symlink("none", (folder_ / "dangling").c_str()), 0);
  EXPECT_FALSE(files_.exists(folder_ / "dangling"));
  // In doubt it does: a record that cannot be seen for a fault must not be begun anew.
  ASSERT_EQ(symlink("ring", (folder_ / "ring").c_str()), 0);
  EXPECT_TRUE(files_.exists(folder_ / "ring"));
  EXPECT_FALSE(files_.exists(folder_.write("file", "x") + "/below"));
  EXPECT_FALSE(files_.exists(folder_ / std::string(300, 'x')));
}

TEST_F(PosixFilesTest, MakesMissingFoldersForTheUserAlone) {
  const std::string path = folder_ / "a/b/c/f";
  ASSERT_TRUE(files_.writeAtomically(path, "x").ok());
  EXPECT_EQ(files_.read(path, kPlenty).value(), "x");
  EXPECT_EQ(permissionsOf(folder_ / "a"), 0700U);
  EXPECT_EQ(permissionsOf(folder_ / "a/b/c"), 0700U);
  EXPECT_EQ(permissionsOf(path), 0600U);
}

TEST_F(PosixFilesTest, AFileInTheWayOfAFolderIsAnError) {
  const std::string file = folder_.write("file", "x");
  EXPECT_THAT(files_.writeAtomically(file + "/f", "y").error(), EndsWith(": Not a directory"));
  EXPECT_EQ(files_.read(file, kPlenty).value(), "x");
}

TEST_F(PosixFilesTest, KeepsThePermissionsOfTheFileBefore) {
  const std::string path = folder_.write("f", "old");
  ASSERT_EQ(chmod(path.c_str(), 0644), 0);
  ASSERT_TRUE(files_.writeAtomically(path, "new").ok());
  EXPECT_EQ(permissionsOf(path), 0644U);
}

TEST_F(PosixFilesTest, WritesThroughALinkAndLeavesItALink) {
  const std::string real = folder_.write("elsewhere/real", "old");
  std::filesystem::create_directory(folder_ / "links");
  ASSERT_EQ(symlink("../elsewhere/real", (folder_ / "links/relative").c_str()), 0);
  ASSERT_EQ(symlink((folder_ / "links/relative").c_str(), (folder_ / "absolute").c_str()), 0);
  ASSERT_TRUE(files_.writeAtomically(folder_ / "absolute", "new").ok());
  EXPECT_EQ(files_.read(real, kPlenty).value(), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "absolute"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "links/relative"));
}

TEST_F(PosixFilesTest, WritesTheMissingTargetOfALink) {
  ASSERT_EQ(symlink("made/later", (folder_ / "link").c_str()), 0);
  ASSERT_TRUE(files_.writeAtomically(folder_ / "link", "x").ok());
  EXPECT_EQ(files_.read(folder_ / "made/later", kPlenty).value(), "x");
}

TEST_F(PosixFilesTest, ARingOfLinksIsAnError) {
  ASSERT_EQ(symlink("two", (folder_ / "one").c_str()), 0);
  ASSERT_EQ(symlink("one", (folder_ / "two").c_str()), 0);
  EXPECT_THAT(files_.writeAtomically(folder_ / "one", "x").error(),
              EndsWith(": Too many levels of symbolic links"));
  EXPECT_THAT(files_.read(folder_ / "one", kPlenty).error(), EndsWith(": Too many levels of symbolic links"));
  EXPECT_THAT(namesIn(folder_.path()), UnorderedElementsAre("one", "two"));
}

TEST_F(PosixFilesTest, AFolderIsNotReplaced) {
  folder_.makeFolder("sub");
  EXPECT_THAT(files_.writeAtomically(folder_ / "sub", "x").error(), EndsWith(": Is a directory"));
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("sub"));
}

TEST_F(PosixFilesTest, KeepsTheOldContentWhenThereIsNoRoom) {
  const std::string path = folder_.write("f", "old");
  // A limit on the size of files fails in the middle of the writing, as a full disk does.
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit tight{4096, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
  const Result<Done> result = files_.writeAtomically(path, std::string(100'000, 'x'));
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(result.error(), path + ": File too large");
  EXPECT_EQ(files_.read(path, kPlenty).value(), "old");
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("f"));
}

TEST_F(PosixFilesTest, KeepsTheOldContentOnAFullDisk) {
  const std::string disk = folder_.makeFolder("disk");
  if (mount("none", disk.c_str(), "tmpfs", 0, "size=64k") != 0) GTEST_SKIP() << "may not mount a small disk";
  ASSERT_TRUE(files_.writeAtomically(disk + "/f", "old").ok());
  const Result<Done> result = files_.writeAtomically(disk + "/f", std::string(1'000'000, 'x'));
  const Result<std::string> left = files_.read(disk + "/f", kPlenty);
  const std::vector<std::string> names = namesIn(disk);
  ASSERT_EQ(umount(disk.c_str()), 0);
  EXPECT_EQ(result.error(), disk + "/f: No space left on device");
  EXPECT_EQ(left.value(), "old");
  EXPECT_THAT(names, ElementsAre("f"));
}

TEST_F(PosixFilesTest, WithoutPermissionNothingChanges) {
  const std::string readOnly = folder_.write("open/read-only", "old");
  const std::string hidden = folder_.write("open/hidden", "secret");
  const std::string closed = folder_.makeFolder("closed");
  chmod(folder_.path().c_str(), 0755);
  chmod((folder_ / "open").c_str(), 0777);
  chmod(readOnly.c_str(), 0444);
  chmod(hidden.c_str(), 0000);
  chmod(closed.c_str(), 0555);
  {
    const AsOrdinaryUser user;
    if (!user.changed()) GTEST_SKIP() << "may not become an ordinary user";
    EXPECT_EQ(files_.read(hidden, kPlenty).error(), hidden + ": Permission denied");
    EXPECT_EQ(files_.probeForUpdating(readOnly).error(), readOnly + ": Permission denied");
    EXPECT_EQ(files_.writeAtomically(readOnly, "new").error(), readOnly + ": Permission denied");
    EXPECT_EQ(files_.writeAtomically(closed + "/f", "new").error(), closed + "/f: Permission denied");
    EXPECT_EQ(files_.read(readOnly, kPlenty).value(), "old");
  }
  EXPECT_THAT(namesIn(closed), IsEmpty());
  EXPECT_THAT(namesIn(folder_ / "open"), UnorderedElementsAre("read-only", "hidden"));
}

TEST_F(PosixFilesTest, WhatAKilledProcessLeftIsClearedAway) {
  folder_.write(".lumivane-0123456789abcdef.tmp", "left");
  const std::string users = folder_.write(".lumivane-notes.tmp", "not ours");
  ASSERT_TRUE(files_.writeAtomically(folder_ / "f", "x").ok());
  EXPECT_THAT(namesIn(folder_.path()), UnorderedElementsAre("f", ".lumivane-notes.tmp"));
}

TEST_F(PosixFilesTest, WhatAnotherProcessIsWritingIsLeftAlone) {
  const std::string other = folder_.write(".lumivane-0123456789abcdef.tmp", "half");
  const FileDescriptor writing(open(other.c_str(), O_WRONLY | O_CLOEXEC));
  ASSERT_EQ(flock(writing.get(), LOCK_EX | LOCK_NB), 0);
  ASSERT_TRUE(files_.writeAtomically(folder_ / "f", "x").ok());
  EXPECT_THAT(namesIn(folder_.path()), UnorderedElementsAre("f", ".lumivane-0123456789abcdef.tmp"));
}

TEST_F(PosixFilesTest, ManyWritersInOneFolderDoNotDisturbEachOther) {
  std::vector<std::jthread> writers;
  std::atomic<int> failures{0};
  for (int writer = 0; writer < 4; ++writer) {
    writers.emplace_back([this, writer, &failures] {
      PosixFiles files;
      for (int i = 0; i < 50; ++i) {
        if (!files.writeAtomically(folder_ / std::to_string(writer), std::to_string(i)).ok()) ++failures;
      }
    });
  }
  writers.clear();
  EXPECT_EQ(failures, 0);
  EXPECT_THAT(namesIn(folder_.path()), UnorderedElementsAre("0", "1", "2", "3"));
}

TEST_F(PosixFilesTest, RenamesOverWhatIsThere) {
  folder_.write("from", "new");
  folder_.write("to", "old");
  ASSERT_TRUE(files_.rename(folder_ / "from", folder_ / "to").ok());
  EXPECT_EQ(files_.read(folder_ / "to", kPlenty).value(), "new");
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("to"));
  EXPECT_THAT(files_.rename(folder_ / "from", folder_ / "to").error(),
              EndsWith("from: No such file or directory"));
}

TEST_F(PosixFilesTest, ProbesWithoutTouching) {
  const std::string path = folder_.write("f", "content");
  EXPECT_TRUE(files_.probeForUpdating(path).ok());
  EXPECT_EQ(files_.read(path, kPlenty).value(), "content");
  EXPECT_THAT(files_.probeForUpdating(folder_ / "none").error(), EndsWith(": No such file or directory"));
}

}  // namespace
}  // namespace lumivane

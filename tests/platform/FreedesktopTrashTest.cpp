#include "platform/linux/FreedesktopTrash.h"

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <set>
#include <sstream>

#include "platform/linux/FileDescriptor.h"
#include "tests/support/OwnMounts.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

std::set<std::string> namesIn(const std::string& folder) {
  std::set<std::string> names;
  std::error_code none;
  for (const auto& entry : fs::directory_iterator(folder, none))
    names.insert(entry.path().filename().string());
  return names;
}

bool isThere(const std::string& path) {
  struct stat state {};
  return lstat(path.c_str(), &state) == 0;
}

// As the desktops' trash specification wants it: slashes stay, every byte beyond ASCII and every special one is encoded.
std::string encoded(const std::string& path) {
  constexpr std::string_view kPlain = "-_.!~*'()/";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    const bool plain = (byte < 128 && std::isalnum(byte) != 0) || kPlain.find(character) != std::string::npos;
    text += plain ? std::string(1, character) : std::string{'%', kDigits[byte / 16], kDigits[byte % 16]};
  }
  return text;
}

// The administrator may write everywhere; without this right only what the permission bits allow.
class WithoutOverride {
 public:
  WithoutOverride() { set(before_ & ~(1U << CAP_DAC_OVERRIDE)); }
  ~WithoutOverride() { set(before_); }
  WithoutOverride(const WithoutOverride&) = delete;
  WithoutOverride& operator=(const WithoutOverride&) = delete;

 private:
  using Rights = std::array<__user_cap_data_struct, 2>;
  static Rights get() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    Rights rights{};
    syscall(SYS_capget, &header, rights.data());
    return rights;
  }
  static void set(std::uint32_t effective) {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    Rights rights = get();
    rights[0].effective = effective;
    syscall(SYS_capset, &header, rights.data());
  }
  const std::uint32_t before_ = get()[0].effective;
};

class FreedesktopTrashTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dataHome_ = std::getenv("XDG_DATA_HOME");  // NOLINT(concurrency-mt-unsafe): set before there were threads
    ASSERT_TRUE(dataHome_.starts_with(fs::temp_directory_path().string()));  // DesktopTestMain.cpp
    fs::remove_all(dataHome_);
  }
  [[nodiscard]] std::string trashed(const std::string& name) const {
    return dataHome_ + "/Trash/files/" + name;
  }
  [[nodiscard]] std::string info(const std::string& name) const {
    return contentOf(dataHome_ + "/Trash/info/" + name + ".trashinfo");
  }
  [[nodiscard]] std::set<std::string> trashedNames() const { return namesIn(dataHome_ + "/Trash/files"); }
  [[nodiscard]] std::set<std::string> infoNames() const { return namesIn(dataHome_ + "/Trash/info"); }

  std::string dataHome_;
  TemporaryFolder folder_;
  FreedesktopTrash trash_;
};

TEST_F(FreedesktopTrashTest, MovesAFileIntoATrashThatItMakes) {
  const std::string path = folder_.write("a.jpg", "pixels");
  ASSERT_FALSE(isThere(dataHome_));
  const Result<Done> moved = trash_.trashItem(path);
  ASSERT_TRUE(moved) << moved.error();
  EXPECT_FALSE(isThere(path));
  EXPECT_EQ(contentOf(trashed("a.jpg")), "pixels");
  EXPECT_THAT(info("a.jpg"), HasSubstr("[Trash Info]\nPath=" + path + "\nDeletionDate="));
  EXPECT_TRUE(std::regex_search(info("a.jpg"), std::regex(R"(=\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d)")));
  EXPECT_THAT(infoNames(), ElementsAre("a.jpg.trashinfo"));
}

TEST_F(FreedesktopTrashTest, FilesOfOneNameLieSideBySide) {
  const std::string one = folder_.write("one/a.jpg", "one");
  const std::string two = folder_.write("two/a.jpg", "two");
  ASSERT_TRUE(trash_.trashItem(one));
  ASSERT_TRUE(trash_.trashItem(two));
  std::set<std::string> contents;
  for (const std::string& name : trashedNames()) {
    const std::string content = contentOf(trashed(name));
    contents.insert(content);
    EXPECT_THAT(info(name), HasSubstr("\nPath=" + folder_.path() + "/" + content + "/a.jpg\n"));
  }
  EXPECT_THAT(contents, ElementsAre("one", "two"));
  EXPECT_EQ(infoNames().size(), 2U);
}

TEST_F(FreedesktopTrashTest, AwkwardNamesAreKeptToTheByte) {
  for (const std::string name :
       {"Köln b#1%.jpg", "50%25.jpg", "two\nlines\n[Trash Info]\nPath=x", "\xFF\xFE\x80.jpg", "-rf", " ",
        "a\\b\t.jpg", "=;[x]&?.jpg", "\xE2\x80\xAEgpj.exe"}) {
    const std::string path = folder_.write(name, "pixels of " + name);
    const Result<Done> moved = trash_.trashItem(path);
    ASSERT_TRUE(moved) << moved.error();
    EXPECT_FALSE(isThere(path));
    EXPECT_EQ(contentOf(trashed(name)), "pixels of " + name);
    EXPECT_THAT(info(name), ::testing::StartsWith("[Trash Info]\nPath=" + encoded(path) + "\nDeletionDate="));
  }
}

TEST_F(FreedesktopTrashTest, ALinkIsMovedItself) {
  const std::string target = folder_.write("target.jpg", "pixels");
  const std::string link = folder_ / "link.jpg";
  const std::string dangling = folder_ / "dangling.jpg";
  fs::create_symlink(target, link);
  fs::create_symlink(folder_ / "gone.jpg", dangling);
  EXPECT_TRUE(trash_.trashItem(link));
  EXPECT_TRUE(trash_.trashItem(dangling));
  EXPECT_EQ(contentOf(target), "pixels");
  EXPECT_FALSE(isThere(link) || isThere(dangling));
  EXPECT_EQ(fs::read_symlink(trashed("link.jpg")), target);
  EXPECT_EQ(fs::read_symlink(trashed("dangling.jpg")), folder_ / "gone.jpg");
}

TEST_F(FreedesktopTrashTest, AMissingFileIsAnError) {
  const Result<Done> moved = trash_.trashItem(folder_ / "two\nlines.jpg");
  ASSERT_FALSE(moved);
  EXPECT_THAT(moved.error(), ::testing::AllOf(HasSubstr("No such file"), ::testing::Not(HasSubstr("\n"))));
  EXPECT_THAT(trashedNames(), IsEmpty());
  EXPECT_THAT(infoNames(), IsEmpty());
}

TEST_F(FreedesktopTrashTest, AFileInAReadOnlyFolderStays) {
  const std::string path = folder_.write("folder/a.jpg", "pixels");
  fs::permissions(folder_ / "folder", fs::perms::owner_read | fs::perms::owner_exec);
  const WithoutOverride ordinary;
  ASSERT_FALSE(std::ofstream(folder_ / "folder/b.jpg").is_open());
  const Result<Done> moved = trash_.trashItem(path);
  ASSERT_FALSE(moved);
  EXPECT_THAT(moved.error(), HasSubstr("Permission denied"));
  EXPECT_EQ(contentOf(path), "pixels");
  EXPECT_THAT(trashedNames(), IsEmpty());
  EXPECT_THAT(infoNames(), IsEmpty());
}

// Its information file would have too long a name.
TEST_F(FreedesktopTrashTest, AFileOfTheLongestNameStays) {
  const std::string path = folder_.write(std::string(255, 'x'), "pixels");
  EXPECT_FALSE(trash_.trashItem(path));
  EXPECT_EQ(contentOf(path), "pixels");
  EXPECT_THAT(infoNames(), IsEmpty());
}

TEST_F(FreedesktopTrashTest, NeverMovesAnotherFileThanTheSystemWouldOpen) {
  const std::string near = folder_.write("near/a.jpg", "near");
  const std::string far = folder_.write("far/a.jpg", "far");
  folder_.makeFolder("far/below");
  fs::create_directory_symlink(folder_ / "far/below", folder_ / "near/link");
  // The system: far/a.jpg. By the text alone: near/a.jpg.
  EXPECT_FALSE(trash_.trashItem(folder_ / "near/link/../a.jpg"));
  EXPECT_FALSE(trash_.trashItem(folder_ / "near/link/"));
  EXPECT_FALSE(trash_.trashItem(near + std::string("\0b", 2)));
  EXPECT_FALSE(trash_.trashItem(""));
  EXPECT_EQ(contentOf(near), "near");
  EXPECT_EQ(contentOf(far), "far");
  EXPECT_TRUE(isThere(folder_ / "near/link"));
  EXPECT_TRUE(trash_.trashItem(folder_ / "near/../near/./a.jpg"));
  EXPECT_EQ(contentOf(trashed("a.jpg")), "near");
}

TEST_F(FreedesktopTrashTest, AFileSystemWithoutTrashKeepsItsFile) {
  const std::string mounted = folder_.makeFolder("mounted");
  const auto answer = withMounted("tmpfs", mounted, [&] {
    const std::string path = folder_.write("mounted/a.jpg", "pixels");
    const Result<Done> moved = trash_.trashItem(path);
    return moved ? "moved" : contentOf(path) + ": " + moved.error();
  });
  if (!answer) GTEST_SKIP() << "no file system may be mounted here";
  EXPECT_THAT(*answer, ::testing::MatchesRegex("pixels: .*not supported.*"));
  EXPECT_THAT(trashedNames(), IsEmpty());
}

// To the system, memory as ramfs is a disk like any other.
TEST_F(FreedesktopTrashTest, AnotherDiskHasItsOwnTrash) {
  const std::string mounted = folder_.makeFolder("mounted");
  const std::string top = mounted + "/.Trash-" + std::to_string(getuid());
  const auto answer = withMounted("ramfs", mounted, [&] {
    const std::string path = folder_.write("mounted/folder/\xFF b.jpg", "pixels");
    const Result<Done> moved = trash_.trashItem(path);
    if (!moved) return moved.error();
    return std::string(isThere(path) ? "still there" : "gone") + "\n" + contentOf(top + "/files/\xFF b.jpg") +
           "\n" + contentOf(top + "/info/\xFF b.jpg.trashinfo");
  });
  if (!answer) GTEST_SKIP() << "no file system may be mounted here";
  EXPECT_THAT(*answer,
              ::testing::StartsWith("gone\npixels\n[Trash Info]\nPath=folder/%FF%20b.jpg\nDeletionDate="));
  EXPECT_THAT(trashedNames(), IsEmpty());
}

// Killed at any moment, each file is where it was or in the trash, whole.
TEST_F(FreedesktopTrashTest, AProcessThatIsKilledLosesNoFile) {
  constexpr int kKills = 30;
  constexpr int kFiles = 200;
  std::mt19937 dice(2026);
  std::size_t moved = 0;
  for (int kill_ = 0; kill_ < kKills; ++kill_) {
    const std::string run = std::to_string(kill_) + "-";
    for (int i = 0; i < kFiles; ++i) folder_.write(run + std::to_string(i), "picture " + std::to_string(i));
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const FileDescriptor begun(ends[0]);
    FileDescriptor begins(ends[1]);
    const pid_t child = fork();
    if (child == 0) {
      alarm(60);
      for (int i = 0; i < kFiles; ++i) {
        if (!trash_.trashItem(folder_ / (run + std::to_string(i))).ok()) _exit(1);
        if (i == 0 && write(begins.get(), "x", 1) != 1) _exit(1);
      }
      for (;;) pause();
    }
    begins = FileDescriptor();
    char byte = 0;
    ASSERT_EQ(read(begun.get(), &byte, 1), 1);
    const timespec moment{0, static_cast<long>(dice() % 10'000'000)};
    nanosleep(&moment, nullptr);  // the moment itself is what is tried
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    for (int i = 0; i < kFiles; ++i) {
      const std::string name = run + std::to_string(i);
      const bool inPlace = isThere(folder_ / name);
      ASSERT_NE(inPlace, isThere(trashed(name))) << name;
      ASSERT_EQ(contentOf(inPlace ? folder_ / name : trashed(name)), "picture " + std::to_string(i));
      moved += inPlace ? 0 : 1;
    }
  }
  EXPECT_GE(moved, static_cast<std::size_t>(kKills));
}

}  // namespace
}  // namespace lumivane

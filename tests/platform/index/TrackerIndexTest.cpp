#include "platform/linux/index/TrackerIndex.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "platform/linux/FileUri.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr const char* kTracker = "org.freedesktop.Tracker3.Miner.Files";
constexpr const char* kLocalSearch = "org.freedesktop.LocalSearch3";

std::string busAddress() {
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  return address == nullptr ? std::string() : std::string(address);
}

// The made index, as a program of its own that can be stopped and killed.
class MadeIndex {
 public:
  // Has gone through all its files when `progress` is 1.
  MadeIndex(const std::string& rows, const char* name, const char* progress) {
    int in[2], out[2];
    if (pipe(in) != 0 || pipe(out) != 0) return;
    const char* program = std::getenv("LUMIVANE_INDEX_SERVICE");
    child_ = fork();
    if (child_ == 0) {
      dup2(in[0], 0);
      dup2(out[1], 1);
      for (const int descriptor : {in[0], in[1], out[0], out[1]}) close(descriptor);
      execl(program, program, name, progress, nullptr);
      _exit(127);
    }
    close(in[0]);
    close(out[1]);
    for (std::size_t done = 0; done < rows.size();) {
      const ssize_t written = write(in[1], rows.data() + done, rows.size() - done);
      if (written <= 0) break;
      done += static_cast<std::size_t>(written);
    }
    close(in[1]);
    char byte = 0;
    while (read(out[0], &byte, 1) == 1 && byte != '\n') ready_ += byte;
    close(out[0]);
  }
  MadeIndex(const MadeIndex&) = delete;
  MadeIndex& operator=(const MadeIndex&) = delete;
  ~MadeIndex() {
    send(SIGKILL);
    int status = 0;
    waitpid(child_, &status, 0);
  }

  [[nodiscard]] bool isReady() const { return ready_ == "ready"; }
  void send(int signal) const {
    if (child_ > 0) kill(child_, signal);
  }

 private:
  pid_t child_ = -1;
  std::string ready_;
};

class TrackerIndexTest : public testing::Test {
 protected:
  void addRow(const std::string& uri, const std::string& numbers) { rows_ += uri + "\t" + numbers + "\n"; }
  void addFile(const std::string& name, const std::string& numbers) { addRow(uri(name), numbers); }
  void addFiles(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
      addFile("picture-" + std::to_string(i) + ".jpg", "1000\t640\t480");
  }
  [[nodiscard]] std::string uri(const std::string& name) const { return fileUri(folder_ / name).value(); }

  void startService(const char* name = kTracker, const char* progress = "1") {
    addRow(fileUri(folder_.path()).value(), "4096\t0\t0");
    service_ = std::make_unique<MadeIndex>(rows_, name, progress);
    ASSERT_TRUE(service_->isReady());
  }

  TrackerIndex index(TrackerIndex::Limits limits) {
    limits.betweenLooks = 10ms;
    return {busAddress(), [this] { return roots_; }, limits};
  }
  std::string refusal(TrackerIndex::Limits limits = {}) {
    const auto opened = index(limits).open(folder_.path(), {});
    return opened ? "none" : opened.error();
  }

  // Names of all files found; `atFirst` is called with the first.
  Result<Done> search(std::uint32_t largerThanBytes = 0, const std::function<void()>& atFirst = {},
                      TrackerIndex::Limits limits = {}) {
    auto opened = index(limits).open(folder_.path(), stop_.get_token());
    if (!opened) return Error{"refused: " + opened.error()};
    name_ = opened.value()->name();
    return opened.value()->search(
        {folder_.path(), largerThanBytes, 0},
        [&](IndexedFile file) {
          found_.push_back(file.path.substr(folder_.path().size() + 1));
          files_.push_back(std::move(file));
          if (found_.size() == 1 && atFirst) atFirst();
        },
        stop_.get_token());
  }

  TemporaryFolder folder_;
  std::optional<std::vector<std::string>> roots_{{folder_.path()}};
  std::string rows_;
  std::unique_ptr<MadeIndex> service_;
  std::stop_source stop_;
  std::string name_;
  std::vector<std::string> found_;
  std::vector<IndexedFile> files_;
};

TEST_F(TrackerIndexTest, FindsWhatIsLargeEnoughBelowTheFolder) {
  addFile("a.jpg", "2049\t640\t480");
  addFile("sub/b c.jpg", "5000\t10\t20");
  addFile("exact.jpg", "2048\t640\t480");
  addRow("file:///elsewhere/d.jpg", "5000\t640\t480");
  startService();
  ASSERT_TRUE(search(2048));
  EXPECT_THAT(found_, UnorderedElementsAre("a.jpg", "sub/b c.jpg"));
  for (const IndexedFile& file : files_)
    EXPECT_EQ(file.size, file.stamp.bytes == 5000 ? (SizePx{10, 20}) : (SizePx{640, 480}));
  EXPECT_EQ(name_, "the desktop's index (org.freedesktop.Tracker3.Miner.Files)");
}

TEST_F(TrackerIndexTest, WhatItDoesNotKnowIsStampedFromDisk) {
  const std::string real = folder_.write("a.webp", "12345");
  std::filesystem::create_symlink(real, folder_ / "link.webp");
  for (const char* name : {"a.webp", "link.webp", "gone.webp"}) addFile(name, "77\t0\t0");
  startService();
  ASSERT_TRUE(search());
  ASSERT_THAT(found_, UnorderedElementsAre("a.webp"));
  struct stat status {};
  ASSERT_EQ(stat(real.c_str(), &status), 0);
  EXPECT_FALSE(files_[0].size);
  EXPECT_EQ(files_[0].stamp, stampOf(status));
}

TEST_F(TrackerIndexTest, AnswersByItsNewerNameAsWell) {
  addFile("a.jpg", "1000\t640\t480");
  startService(kLocalSearch);
  ASSERT_TRUE(search());
  EXPECT_THAT(found_, UnorderedElementsAre("a.jpg"));
  EXPECT_THAT(name_, HasSubstr(kLocalSearch));
}

TEST_F(TrackerIndexTest, HostileRowsAreLeftOut) {
  addFile("a.jpg", "1000\t640\t480");
  for (const char* hostile : {"/../escaped.jpg", "/%FF.jpg", "/a%0Ab.jpg", "/.hidden.jpg", "//twice.jpg"})
    addRow(fileUri(folder_.path()).value() + hostile, "1000\t640\t480");
  startService();
  ASSERT_TRUE(search());
  EXPECT_THAT(found_, UnorderedElementsAre("a.jpg"));
}

TEST_F(TrackerIndexTest, RefusesWithoutABus) {
  TrackerIndex none("", [this] { return roots_; });
  const auto opened = none.open("/p", {});
  ASSERT_FALSE(opened);
  EXPECT_EQ(opened.error(), "The desktop's index does not answer for /p: there is no session bus");
  TrackerIndex gone("unix:path=/nonexistent", [this] { return roots_; });
  const auto unreachable = gone.open("/p", {});
  ASSERT_FALSE(unreachable);
  EXPECT_THAT(unreachable.error(), HasSubstr("the session bus cannot be reached: "));
}

TEST_F(TrackerIndexTest, RefusesWithoutAService) {
  EXPECT_THAT(refusal(), HasSubstr("there is no such service"));
}

TEST_F(TrackerIndexTest, RefusesFoldersItIsNotSetToTakeIn) {
  startService();
  EXPECT_EQ(refusal(), "none");
  roots_ = {"/elsewhere", folder_ / "sub"};
  EXPECT_THAT(refusal(), HasSubstr("it is not set to take in this folder"));
  roots_ = std::nullopt;
  EXPECT_THAT(refusal(), HasSubstr("its settings are not there"));
}

TEST_F(TrackerIndexTest, RefusesAFolderThatItHasNotComeTo) {
  service_ = std::make_unique<MadeIndex>(uri("other.jpg") + "\t1\t1\t1\n", kTracker, "1");
  EXPECT_THAT(refusal(), HasSubstr("it has not come to this folder"));
}

TEST_F(TrackerIndexTest, RefusesWhileItIsAtWork) {
  startService(kTracker, "0.99");
  EXPECT_THAT(refusal({.toSettle = 1500ms}), HasSubstr("is still at work"));
}

TEST_F(TrackerIndexTest, RefusesWhileFilesStillComeToItAlthoughItSaysThatItIsIdle) {
  setenv("LUMIVANE_GROWING_FOLDER", fileUri(folder_.path()).value().c_str(), 1);
  startService();
  unsetenv("LUMIVANE_GROWING_FOLDER");
  EXPECT_THAT(refusal({.toSettle = 1500ms}), HasSubstr("is still at work"));
}

TEST_F(TrackerIndexTest, OneThatHangsIsNotWaitedFor) {
  startService();
  service_->send(SIGSTOP);
  EXPECT_THAT(refusal({.perQuestion = 300ms}), HasSubstr("it takes too long"));
}

TEST_F(TrackerIndexTest, OneThatHangsInTheMiddleEndsTheSearchWithWhatItHas) {
  addFiles(4'000);
  startService();
  const auto done = search(0, [this] { service_->send(SIGSTOP); }, {.perRow = 500ms});
  ASSERT_FALSE(done);
  EXPECT_THAT(done.error(), HasSubstr("it takes too long"));
  EXPECT_GT(found_.size(), 0U);
  EXPECT_LT(found_.size(), 4'000U);
}

TEST_F(TrackerIndexTest, OneThatDiesInTheMiddleEndsTheSearchWithWhatItHas) {
  addFiles(4'000);
  startService();
  const auto done = search(0, [this] { service_->send(SIGKILL); });
  ASSERT_FALSE(done);
  EXPECT_THAT(done.error(), Not(HasSubstr("refused")));
  EXPECT_GT(found_.size(), 0U);
  EXPECT_LT(found_.size(), 4'000U);
}

TEST_F(TrackerIndexTest, AllOfManyRowsAreTold) {
  addFiles(4'000);
  startService();
  ASSERT_TRUE(search());
  EXPECT_EQ(found_.size(), 4'000U);
}

TEST_F(TrackerIndexTest, AStopEndsEvenASearchThatHangs) {
  addFiles(4'000);
  startService();
  std::jthread stopper;
  const auto done = search(0,
                           [&] {
                             service_->send(SIGSTOP);
                             stopper = std::jthread([this] { stop_.request_stop(); });
                           },
                           {.perRow = 60s});
  EXPECT_FALSE(done);
}

TEST_F(TrackerIndexTest, AStopBeforehandAsksNothing) {
  startService();
  stop_.request_stop();
  EXPECT_FALSE(search());
  EXPECT_THAT(found_, IsEmpty());
}

}  // namespace
}  // namespace lumivane

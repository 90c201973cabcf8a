// A process that writes settings, list and record over and over, killed at random moments: each file is the old one or
// the new one, whole, and nothing that was told to be written is lost.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <random>
#include <thread>

#include "collection/ImageListFile.h"
#include "engine/LastRunRecord.h"
#include "platform/linux/PosixFiles.h"
#include "settings/PreferencesStore.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

constexpr int kKills = 200;
constexpr std::size_t kListLength = 500;
constexpr const char* kDisplay = "Color LCD";

// How far the writer has got, in memory that outlives it.
struct Progress {
  std::atomic<std::int32_t> settings{0};
  std::atomic<std::int32_t> list{0};
  std::atomic<std::int32_t> record{0};
};
static_assert(std::atomic<std::int32_t>::is_always_lock_free);

std::vector<std::string> listOf(std::int32_t version) {
  std::vector<std::string> list;
  for (std::size_t i = 0; i < kListLength; ++i)
    list.push_back("/pictures/" + std::to_string(version) + "/" + std::to_string(i) + ".jpg");
  return list;
}

// The units with which the program itself writes.
struct Stored {
  explicit Stored(const std::string& folder)
      : listPath(folder + "/data/" + imageListFileName(kDisplay)),
        recordPath(folder + "/data/LumivaneLastRunInfo.plist"),
        store(files, log, folder + "/config") {}

  PosixFiles files;
  RecordingLog log;
  std::string listPath;
  std::string recordPath;
  SettingsStore store;
  PreferencesStore preferences{store, log};
  LastRunRecord record{files, log};
};

[[noreturn]] void writeForEver(const std::string& folder, Progress& progress) {
  Stored stored(folder);
  DisplaySettings settings = stored.preferences.load(kDisplay, {});
  static_cast<void>(stored.record.loadLastRunInfo(stored.recordPath, {}));
  for (;;) {
    settings.durationPerImage_ = progress.settings + 1;
    settings.skipPatterns_ = listOf(settings.durationPerImage_);
    if (!stored.preferences.save(settings)) _exit(1);
    ++progress.settings;
    saveImageList(stored.files, stored.listPath, ImageList(listOf(progress.list + 1)), stored.log);
    ++progress.list;
    const std::int32_t version = progress.record + 1;
    stored.record.saveLastRunInfo(
        {static_cast<ImageIndex>(version), WallTime(std::chrono::seconds(1'800'000'000 + version))});
    ++progress.record;
    if (stored.log.countStartingWith("saving image list failed") != 0) _exit(1);
    stored.log.clear();
  }
}

class KilledWriter : public testing::Test {
 protected:
  KilledWriter()
      : progress_(new (mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
                            0)) Progress) {}
  ~KilledWriter() override { munmap(progress_, sizeof(Progress)); }

  // Begins a writer and kills it: a little while after it has written something at all.
  void writeAndKill(std::chrono::microseconds after) {
    const std::int32_t before = progress_->settings;
    const pid_t writer = fork();
    if (writer == 0) {
      alarm(60);
      writeForEver(folder_.path(), *progress_);
    }
    while (progress_->settings == before && waitpid(writer, nullptr, WNOHANG) == 0) std::this_thread::yield();
    const timespec pause{0, std::chrono::nanoseconds(after).count()};
    nanosleep(&pause, nullptr);  // the moment itself is what is tried
    kill(writer, SIGKILL);
    int status = 0;
    waitpid(writer, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "the writer ended by itself";
  }

  static void expectOldOrNew(std::int32_t found, std::int32_t told, const char* what) {
    EXPECT_TRUE(found == told || found == told + 1) << what << ": " << found << ", told were " << told;
  }

  void expectWhole() {
    Stored stored(folder_.path());
    const DisplaySettings settings = stored.preferences.load(kDisplay, {});
    expectOldOrNew(settings.durationPerImage_, progress_->settings, "settings");
    EXPECT_EQ(settings.skipPatterns_, listOf(settings.durationPerImage_)) << "of one piece";
    const auto list = loadImageList(stored.files, stored.listPath, stored.log);
    if (progress_->list != 0 || !list.empty()) {
      ASSERT_EQ(list.size(), kListLength);
      const std::int32_t version = std::stoi(std::string(list[0].substr(10)));
      expectOldOrNew(version, progress_->list, "list");
      EXPECT_EQ(list, ImageList(listOf(version))) << "of one piece";
    }
    const auto run = stored.record.loadLastRunInfo(stored.recordPath, {});
    ASSERT_TRUE(run);
    expectOldOrNew(static_cast<std::int32_t>(run->imageIndex), progress_->record, "record");
    if (run->imageIndex != 0) {
      EXPECT_EQ(run->lastScan, WallTime(std::chrono::seconds(1'800'000'000 + run->imageIndex)));
    }
    EXPECT_EQ(stored.log.countStartingWith("settings file cannot be used"), 0U);
    // What was written last is known for certain from here on.
    progress_->settings = settings.durationPerImage_;
    progress_->list = list.empty() ? 0 : std::stoi(std::string(list[0].substr(10)));
    progress_->record = static_cast<std::int32_t>(run->imageIndex);
  }

  [[nodiscard]] std::vector<std::string> names(const std::string& folder) const {
    std::vector<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / folder))
      all.push_back(entry.path().filename());
    return all;
  }

  TemporaryFolder folder_;
  Progress* const progress_;
};

TEST_F(KilledWriter, LosesNothing) {
  std::mt19937 dice(2026);
  for (int kill = 0; kill < kKills && !HasFailure(); ++kill) {
    writeAndKill(std::chrono::microseconds(dice() % 15'000));
    if (HasFatalFailure()) return;
    expectWhole();
  }
  EXPECT_GT(progress_->settings, kKills) << "each wrote something";
  // The next write clears away what the killed ones left.
  Stored stored(folder_.path());
  saveImageList(stored.files, stored.listPath, {"/a.jpg"}, stored.log);
  EXPECT_EQ(names("data").size(), 2U);
  DisplaySettings settings = stored.preferences.load(kDisplay, {});
  settings.durationPerImage_ += 1;
  EXPECT_TRUE(stored.preferences.save(settings));
  EXPECT_EQ(names("config").size(), 1U);
}

}  // namespace
}  // namespace lumivane

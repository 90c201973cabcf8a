// Sounds are "heard" through ALSA's own device that writes what it plays into a file.
#include "platform/linux/ThemeSounds.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <latch>
#include <mutex>
#include <thread>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/ThreadSerialQueues.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::size_t kShort = 400;       // samples
constexpr std::size_t kLong = 1'000'000;  // more than a pipe holds

// Takes jobs of any thread, and runs them when the test says so.
class HandTurnedMainLoop final : public MainLoop {
 public:
  void post(Job job) override {
    const std::scoped_lock lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  void after(Nanoseconds /*delay*/, Job /*job*/) override { FAIL() << "nothing here waits for a time"; }
  std::unique_ptr<Timer> every(Nanoseconds /*interval*/, Nanoseconds /*tolerance*/, Job /*job*/) override {
    return nullptr;
  }
  void runPending() {
    std::vector<Job> jobs;
    {
      const std::scoped_lock lock(mutex_);
      jobs.swap(jobs_);
    }
    for (const Job& job : jobs) job();
  }

 private:
  std::mutex mutex_;
  std::vector<Job> jobs_;  // guarded by mutex_
};

// Lets the test wait for the jobs of a queue that somebody else owns.
class WatchedQueues final : public SerialQueues {
 public:
  [[nodiscard]] std::unique_ptr<SerialQueue> make(const std::string& name) override {
    auto queue = queues_.make(name);
    last_ = queue.get();
    return queue;
  }
  void waitUntilDone() {
    std::latch reached(1);
    last_->async([&] { reached.count_down(); });
    reached.wait();
  }

 private:
  RecordingLog log_;
  ThreadSerialQueues queues_{log_};
  SerialQueue* last_ = nullptr;
};

// Asks until it is so; false at a deadline that only a failure reaches.
bool soon(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::yield();
  }
  return true;
}

std::string littleEndian(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
  return text;
}

// A WAV file of one channel of 16 bits, which is the same number from beginning to end.
std::string wav(std::uint16_t sample, std::size_t samples) {
  const std::string one = littleEndian(sample, 2);
  std::string data;
  data.reserve(samples * 2);
  for (std::size_t i = 0; i < samples; ++i) data += one;
  const std::string format = littleEndian(1, 2) + littleEndian(1, 2) + littleEndian(44'100, 4) +
                             littleEndian(88'200, 4) + littleEndian(2, 2) + littleEndian(16, 2);
  const std::string chunks =
      "WAVEfmt " + littleEndian(format.size(), 4) + format + "data" + littleEndian(data.size(), 4) + data;
  return "RIFF" + littleEndian(chunks.size(), 4) + chunks;
}

std::size_t threadCount() {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/task"), {}));
}

class ThemeSoundsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dataHome_ = std::getenv("XDG_DATA_HOME");  // NOLINT(concurrency-mt-unsafe): set before there were threads
    ASSERT_TRUE(dataHome_.starts_with(fs::temp_directory_path().string()));  // DesktopTestMain.cpp
    fs::remove_all(dataHome_);
    fs::create_directories(theme() + "/stereo");
    std::ofstream(theme() + "/index.theme")
        << "[Sound Theme]\nName=Test\nDirectories=stereo\n\n[stereo]\nOutputProfile=stereo\n";
  }
  [[nodiscard]] std::string theme() const { return dataHome_ + "/sounds/freedesktop"; }
  void addSound(const std::string& name, std::uint16_t sample, std::size_t samples = kShort) const {
    std::ofstream(theme() + "/stereo/" + name + ".wav", std::ios::binary) << wav(sample, samples);
  }

  [[nodiscard]] SoundOutput toFile() const { return {"alsa", "file:'" + (folder_ / "heard") + "',raw"}; }
  void connect(SoundOutput output) {
    sounds_ = std::make_unique<ThemeSounds>(queues_, loop_, std::move(output));
  }
  // Plays, and waits until it is known whether that works.
  void play(Sound sound) {
    sounds_->play(sound, [this](const std::string& reason) {
      failures_.push_back(reason);
      failureThread_ = std::this_thread::get_id();
    });
    queues_.waitUntilDone();
    loop_.runPending();
  }
  // What is in the file of what was heard once it holds as many samples as that. Empty when that never happens.
  [[nodiscard]] std::string heard(std::size_t samples) const {
    std::error_code none;
    if (!soon([&] { return fs::file_size(folder_ / "heard", none) == samples * 2; })) return "";
    std::ifstream file(folder_ / "heard", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] static std::string samplesOf(std::uint16_t sample) { return wav(sample, kShort).substr(44); }

  std::string dataHome_;
  TemporaryFolder folder_;
  HandTurnedMainLoop loop_;
  WatchedQueues queues_;
  std::unique_ptr<ThemeSounds> sounds_;
  std::vector<std::string> failures_;
  std::thread::id failureThread_;
};

TEST_F(ThemeSoundsTest, FunkIsTheAlertSound) {
  addSound("bell", 11);
  addSound("dialog-error", 22);
  connect(toFile());
  play(Sound::Funk);
  EXPECT_EQ(heard(kShort), samplesOf(11));
  EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(ThemeSoundsTest, AThemeMayHaveAnAlertSoundOfTheWindowSystem) {
  addSound("bell", 11);
  addSound("bell-window-system", 33);
  connect(toFile());
  play(Sound::Funk);
  EXPECT_EQ(heard(kShort), samplesOf(33));
}

TEST_F(ThemeSoundsTest, FunkFallsBackToTheSoundOfAnError) {
  addSound("dialog-error", 22);
  connect(toFile());
  play(Sound::Funk);
  EXPECT_EQ(heard(kShort), samplesOf(22));
  EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(ThemeSoundsTest, DragToTrashIsWhatTheThemeHasForIt) {
  addSound("bell", 11);
  addSound("trash-empty", 44);
  addSound("file-trash", 55);
  connect(toFile());
  play(Sound::DragToTrash);
  EXPECT_EQ(heard(kShort), samplesOf(55));
}

TEST_F(ThemeSoundsTest, DragToTrashFallsBackToTheSoundOfEmptyingIt) {
  addSound("trash-empty", 44);
  connect(toFile());
  play(Sound::DragToTrash);
  EXPECT_EQ(heard(kShort), samplesOf(44));
  EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(ThemeSoundsTest, AThemeWithoutTheSoundIsAFailure) {
  addSound("bell", 11);
  connect(toFile());
  play(Sound::DragToTrash);
  EXPECT_THAT(failures_, ElementsAre(::testing::StartsWith("file-trash: ")));
  EXPECT_EQ(failureThread_, std::this_thread::get_id());
}

TEST_F(ThemeSoundsTest, NoThemeAtAllIsAFailure) {
  fs::remove_all(dataHome_);
  connect(toFile());
  play(Sound::Funk);
  EXPECT_THAT(failures_, ElementsAre(::testing::StartsWith("bell-window-system: ")));
}

TEST_F(ThemeSoundsTest, NoSoundSystemIsAFailureEachTime) {
  addSound("bell", 11);
  connect({"alsa", "no-such-device"});
  play(Sound::Funk);
  play(Sound::Funk);
  EXPECT_EQ(failures_.size(), 2U);
  connect({"no-such-driver", ""});
  play(Sound::Funk);
  play(Sound::Funk);
  EXPECT_EQ(failures_.size(), 4U);
}

TEST_F(ThemeSoundsTest, AFileThatIsNoSoundIsAFailure) {
  std::ofstream(theme() + "/stereo/bell.wav") << "RIFF\xFF\xFF\xFF\xFFWAVEfmt noise";
  connect(toFile());
  play(Sound::Funk);
  EXPECT_EQ(failures_.size(), 1U);
}

TEST_F(ThemeSoundsTest, AFailureNeedsNoListener) {
  connect({"no-such-driver", ""});
  sounds_->play(Sound::Funk, nullptr);
  queues_.waitUntilDone();
  loop_.runPending();
  EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(ThemeSoundsTest, AFailureMayComeAfterTheSoundsAreGone) {
  connect({"no-such-driver", ""});
  sounds_->play(Sound::Funk, [this](const std::string& reason) { failures_.push_back(reason); });
  queues_.waitUntilDone();
  sounds_.reset();
  EXPECT_THAT(failures_, IsEmpty());
  loop_.runPending();
  EXPECT_EQ(failures_.size(), 1U);
}

TEST_F(ThemeSoundsTest, CanEndBeforeAnythingWasPlayed) {
  const std::size_t before = threadCount();
  connect({});
  EXPECT_EQ(threadCount(), before + 1);
  sounds_.reset();
  EXPECT_TRUE(soon([&] { return threadCount() == before; }));
}

// A pipe that nobody reads holds up the sound for as long as the test likes. Every sound that plays is one thread.
TEST_F(ThemeSoundsTest, ASoundThatStillPlaysIsNotPiledUpAndIsCutOffAtTheEnd) {
  addSound("bell", 11, kLong);
  addSound("trash-empty", 44, kLong);
  ASSERT_EQ(mkfifo((folder_ / "heard").c_str(), 0600), 0);
  FileDescriptor ear(open((folder_ / "heard").c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  connect(toFile());
  const std::size_t before = threadCount();
  play(Sound::Funk);
  EXPECT_EQ(threadCount(), before + 1);
  for (int i = 0; i < 5; ++i) play(Sound::Funk);
  EXPECT_EQ(threadCount(), before + 1);
  play(Sound::DragToTrash);
  EXPECT_EQ(threadCount(), before + 2);
  EXPECT_THAT(failures_, IsEmpty());
  {
    std::jthread listener([&](const std::stop_token& stop) {
      std::array<char, 4096> chunk{};
      while (!stop.stop_requested()) {
        if (read(ear.get(), chunk.data(), chunk.size()) < 0) std::this_thread::yield();
      }
    });
    sounds_.reset();
  }
  EXPECT_TRUE(soon([&] { return threadCount() == before - 1; }));  // the queue's thread is gone as well
  EXPECT_THAT(failures_, IsEmpty());
}

}  // namespace
}  // namespace lumivane

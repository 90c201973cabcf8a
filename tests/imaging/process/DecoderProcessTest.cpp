// The real process: what it decodes, and what the show sees when it is killed, stopped or short of memory.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <csignal>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "imaging/PictureLoading.h"
#include "imaging/decode/FileImageDecoder.h"
#include "imaging/decode/HeaderDimensions.h"
#include "imaging/process/ProcessDimensions.h"
#include "imaging/process/ProcessImageDecoder.h"
#include "imaging/process/PropertyWire.h"
#include "platform/linux/DecoderProgram.h"
#include "platform/linux/MessageSocket.h"
#include "platform/linux/SealedMemory.h"
#include "tests/imaging/MadePictures.h"
#include "tests/imaging/SampleManifest.h"
#include "tests/support/LevelPixels.h"
#include "tests/support/RealClock.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using vips::VImage;

ProgramToSpawn decoderUnderTest(std::uint64_t memoryBytes) {
  ProgramToSpawn program = decoderProgram("", environmentFrom(environ));
  program.path = std::getenv("LUMIVANE_DECODER");
  program.arguments = {"--memory", std::to_string(memoryBytes)};
  return program;
}

// The processes that the threads of this one have started and nobody has collected yet; of one thread, the newest last.
std::vector<pid_t> children() {
  std::vector<pid_t> processes;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream list(task.path() / "children");
    for (pid_t process = 0; list >> process;) processes.push_back(process);
  }
  return processes;
}

// Shared memory that does something first: it is asked for in the midst of a decode.
class WatchedMemories final : public SharedMemories {
 public:
  std::function<void()> before;
  [[nodiscard]] Result<std::unique_ptr<SharedMemory>> make(std::size_t bytes) override {
    if (before) before();
    return SealedMemory::make(bytes);
  }
};

class DecoderProcessTest : public testing::Test {
 protected:
  DecoderProcessTest() { limits_.picture = std::chrono::seconds(60); }

  void start(std::uint64_t memoryBytes = std::uint64_t{4} << 30) {
    programs_ = std::make_unique<SpawnedPrograms>(decoderUnderTest(memoryBytes));
    processes_ =
        std::make_unique<DecoderProcesses>(*programs_, memories_, clock_, log_, limits_, [](Nanoseconds) {});
    decoder_ = std::make_unique<ProcessImageDecoder>(*processes_);
  }
  std::string inFolder(const std::string& name) const { return folder_ / name; }

  std::string writeQuarters(const std::string& name, int width = 128, int height = 96) const {
    fourQuartersTurned(width, height, 6).write_to_file(inFolder(name).c_str());
    return inFolder(name);
  }

  static std::vector<std::byte> bytesOf(const PropertyDictionary& properties) {
    WireWriter writer;
    writeProperties(writer, properties);
    return writer.take();
  }

  // Everything that the show can see of a picture is the same from both.
  void expectTheSame(const std::string& path, const std::vector<int>& sides = {kThumbnailMaxPixelSize, 100}) {
    const auto there = decoder_->open(path);
    const auto here = inProcess_.open(path);
    ASSERT_EQ(there != nullptr, here != nullptr) << path;
    if (!here) return;
    EXPECT_EQ(there->status(), here->status()) << path;
    const auto properties = there->properties();
    const auto expected = here->properties();
    ASSERT_EQ(properties.has_value(), expected.has_value()) << path;
    EXPECT_TRUE(!expected || bytesOf(*properties) == bytesOf(*expected)) << path;
    for (const int side : sides) expectTheSame(there->thumbnail(side), here->thumbnail(side), path);
  }

  static void expectTheSame(const BitmapRef& bitmap, const BitmapRef& expected, const std::string& path) {
    ASSERT_EQ(bitmap != nullptr, expected != nullptr) << path;
    if (!expected) return;
    ++compared_;
    EXPECT_EQ(bitmap->orientation(), expected->orientation()) << path;
    EXPECT_EQ(bitmap->opaque(), expected->opaque()) << path;
    ASSERT_EQ(bitmap->storedSize(), expected->storedSize()) << path;
    for (std::size_t level = 0; level < expected->levels().size(); ++level) {
      EXPECT_EQ(bitmap->isStored(level), expected->isStored(level)) << path << " " << level;
      EXPECT_TRUE(levelPixels(*bitmap, level) == levelPixels(*expected, level)) << path << " " << level;
    }
  }

  static inline int compared_ = 0;
  TemporaryFolder folder_;
  RealClock clock_;
  RecordingLog log_;
  WatchedMemories memories_;
  DecoderLimits limits_;
  FileImageDecoder inProcess_;
  std::unique_ptr<SpawnedPrograms> programs_;
  std::unique_ptr<DecoderProcesses> processes_;
  std::unique_ptr<ProcessImageDecoder> decoder_;
};

TEST_F(DecoderProcessTest, decodes_every_format_as_it_is_decoded_here) {
  start();
  compared_ = 0;
  for (const char* extension : {"jpg", "png", "gif", "tif", "webp", "heic", "avif", "jxl", "jp2"})
    expectTheSame(writeQuarters(std::string("picture.") + extension));
  EXPECT_EQ(compared_, 18);
  EXPECT_TRUE(log_.entries().empty()) << log_.entries().front().text;
}

TEST_F(DecoderProcessTest, what_is_no_picture_is_none_there_either) {
  start();
  for (const char* content : {"", "hello", "\xFF\xD8\xFF", "BM", "II*", "GIF89a"}) {
    writeFile(inFolder("bad"), content);
    expectTheSame(inFolder("bad"));
  }
  for (const std::string& path : {inFolder("absent"), folder_.path(), std::string("/dev/null")})
    expectTheSame(path);
  EXPECT_TRUE(log_.entries().empty());
}

TEST_F(DecoderProcessTest, sample_pictures_are_the_same) {
  const auto samples = samplesFolder();
  if (!samples) GTEST_SKIP() << "no sample pictures; set LUMIVANE_SAMPLES";
  start();
  compared_ = 0;
  for (const char* folder : {"photos/heic/", "photos/jxl/", "photos/exif/"}) {
    int left = 3;
    for (const SampleRow& row : sampleRows(folder)) {
      const auto path = *samples / row.file();
      if (std::filesystem::file_size(path) < 150'000 && left-- > 0) expectTheSame(path, {2000});
    }
  }
  EXPECT_GT(compared_, 5);
  EXPECT_TRUE(log_.entries().empty());
}

TEST_F(DecoderProcessTest, sizes_are_the_same) {
  start();
  std::vector<std::string> paths{inFolder("absent")};
  for (const char* extension : {"jpg", "png", "heic", "jxl"})
    paths.push_back(writeQuarters(std::string("picture.") + extension));
  ProcessDimensions there(*processes_);
  HeaderDimensions here;
  const auto sizes = there.measure(paths);
  EXPECT_EQ(sizes, here.measure(paths));
  EXPECT_EQ(sizes[1], (SizePx{128, 96}));
}

TEST_F(DecoderProcessTest, memory_is_used_again) {
  int made = 0;
  memories_.before = [&made] { ++made; };
  start();
  const std::string path = writeQuarters("a.jpg", 600, 400);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(decoder_->open(path)->thumbnail(8192));
  EXPECT_EQ(made, 1);
  const BitmapRef kept = decoder_->open(path)->thumbnail(8192);
  expectTheSame(path);
  EXPECT_EQ(made, 3);  // what is shown stays what it is
}

TEST_F(DecoderProcessTest, a_process_killed_in_the_midst_of_a_picture_costs_this_picture_only) {
  start();
  const std::string path = writeQuarters("a.jpg", 600, 400);
  memories_.before = [] { ::kill(children().back(), SIGKILL); };
  const auto outcome = loadPicture(*decoder_, path, {});
  EXPECT_FALSE(outcome.picture);
  ASSERT_EQ(outcome.messages.size(), 1U);
  EXPECT_EQ(outcome.messages[0].text, "Image loading failed: " + path);
  EXPECT_TRUE(log_.has("The decoder process ended while it decoded " + path, LogLevel::Error));
  memories_.before = nullptr;
  EXPECT_TRUE(loadPicture(*decoder_, path, {}).picture);
}

TEST_F(DecoderProcessTest, a_stopped_process_is_given_up_in_time) {
  limits_.picture = std::chrono::milliseconds(200);
  start();
  const std::string path = writeQuarters("a.jpg");
  const auto source = decoder_->open(path);
  ASSERT_TRUE(source && source->status() == ImageSourceStatus::Complete);
  const pid_t stopped = children().back();
  ASSERT_EQ(::kill(stopped, SIGSTOP), 0);
  EXPECT_FALSE(source->thumbnail(8192));
  EXPECT_TRUE(log_.has("The decoder process took too long while it decoded " + path, LogLevel::Error));
  const MediaTime deadline = clock_.now() + std::chrono::seconds(60);
  while (programs_->ending() > 0 && clock_.now() < deadline) std::this_thread::yield();
  EXPECT_EQ(programs_->ending(), 0U);
}

TEST_F(DecoderProcessTest, where_memory_runs_out_the_process_goes_before_the_show) {
  start();
  ASSERT_TRUE(decoder_->open(writeQuarters("a.jpg")));
  std::ifstream score("/proc/" + std::to_string(children().back()) + "/oom_score_adj");
  int points = 0;
  EXPECT_TRUE(score >> points);
  EXPECT_GE(points, 500);
}

TEST_F(DecoderProcessTest, a_process_killed_in_its_sleep_is_replaced) {
  start();
  const std::string path = writeQuarters("a.jpg");
  EXPECT_TRUE(loadPicture(*decoder_, path, {}).picture);
  ::kill(children().back(), SIGKILL);
  siginfo_t ended{};  // told, not collected: that is for the show to do
  ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(children().back()), &ended, WEXITED | WNOWAIT), 0);
  EXPECT_TRUE(loadPicture(*decoder_, path, {}).picture);
  EXPECT_FALSE(processes_->isDeadly(path));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// Decoded as a whole by its library, three bytes and more for each of 49 million pixels.
TEST_F(DecoderProcessTest, a_picture_too_large_for_the_memory_fails_alone) {
  const std::string large = inFolder("large.webp");
  VImage::black(7000, 7000, VImage::option()->set("bands", 3))
      .webpsave(large.c_str(), VImage::option()->set("effort", 0)->set("Q", 1));
  const std::string small = writeQuarters("small.webp");
  start(std::uint64_t{128} << 20);
  EXPECT_FALSE(loadPicture(*decoder_, large, {}).picture);
  EXPECT_TRUE(loadPicture(*decoder_, small, {}).picture);
  start();
  EXPECT_TRUE(loadPicture(*decoder_, large, {}).picture) << log_.entries().size();
}
#endif

TEST_F(DecoderProcessTest, several_threads_have_pictures_decoded_at_once) {
  start();
  const std::string path = writeQuarters("a.jpg", 600, 400);
  const BitmapRef expected = inProcess_.open(path)->thumbnail(8192);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i) {  // more than there are processes
      threads.emplace_back([&] {
        for (int k = 0; k < 3; ++k) expectTheSame(decoder_->open(path)->thumbnail(8192), expected, path);
      });
    }
  }
  EXPECT_TRUE(log_.entries().empty());
}

TEST_F(DecoderProcessTest, the_process_ends_with_the_show) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()), 0);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, ends[1], kChildSocket);
  std::string path = std::getenv("LUMIVANE_DECODER");
  std::array<char*, 2> words{path.data(), nullptr};
  pid_t process = 0;
  ASSERT_EQ(posix_spawn(&process, path.c_str(), &files, nullptr, words.data(), environ), 0);
  posix_spawn_file_actions_destroy(&files);
  ::close(ends[1]);
  MessageReceiver receiver(ends[0], MessageReceiver::Descriptors::Refused);
  std::vector<std::byte> message;
  ASSERT_EQ(receiver.receive(message, std::nullopt), MessageArrival::Message);
  const auto hello = answerIn(message);
  EXPECT_TRUE(hello && std::holds_alternative<HelloAnswer>(*hello));
  ::close(ends[0]);
  int status = -1;
  ASSERT_EQ(::waitpid(process, &status, 0), process);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

TEST_F(DecoderProcessTest, started_by_hand_it_says_what_it_is) {
  ::setenv("DECODER_PATH", std::getenv("LUMIVANE_DECODER"), 1);
  EXPECT_EQ(WEXITSTATUS(std::system("\"$DECODER_PATH\" 2>/dev/null 3</dev/null")), 2);
  EXPECT_EQ(WEXITSTATUS(std::system("\"$DECODER_PATH\" --memory x 2>/dev/null")), 2);
}

}  // namespace
}  // namespace lumivane

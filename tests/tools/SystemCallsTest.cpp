// How often the walk asks the system: strace counts for the real program, with two trees of which one is twice as large as
// the other. What the program asks at its start and its end is the same for both and cancels out.
#include <fstream>
#include <sstream>

#include "tests/tools/LumivaneToolFixture.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kInAFolder = 100;
constexpr std::size_t kFiles = 1000;
constexpr std::size_t kPictures = kFiles * 4 / 5;
constexpr std::size_t kFolders = kFiles / kInAFolder;
constexpr std::uintmax_t kFileBytes = 200'000;  // of nothing: they take no room on the disk

// For memory, which the system is asked for in pieces that grow.
constexpr long kOtherCalls = 10;

using Calls = std::map<std::string, long>;

// The lines of strace's table: share, seconds, microseconds a call, calls, errors if there were any, name.
Calls callsIn(const std::string& table) {
  Calls calls;
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    double share = 0;
    double seconds = 0;
    long microseconds = 0;
    long count = 0;
    if (!(words >> share >> seconds >> microseconds >> count)) continue;
    std::string name;
    for (std::string word; words >> word;) name = word;
    calls[name] = count;
  }
  return calls;
}

class SystemCalls : public LumivaneTool {
 protected:
  // Four of five files bear a picture's name.
  void makeTree(const std::string& name, std::size_t files) const {
    for (std::size_t i = 0; i < files; ++i) {
      const fs::path folder = folder_.path() / name / ("folder " + std::to_string(i / kInAFolder));
      if (i % kInAFolder == 0) fs::create_directories(folder);
      const fs::path file = folder / ("IMG_" + std::to_string(i) + (i % 5 == 0 ? ".txt" : ".jpg"));
      std::ofstream{file};
      fs::resize_file(file, kFileBytes);
    }
  }

  [[nodiscard]] ProgramAnswer trace(std::vector<std::string> words) {
    const std::vector<std::string> tracing{"/usr/bin/strace", "-f", "-c", "-o", table_.string()};
    words.insert(words.begin(), tracing.begin(), tracing.end());
    return runProgram(words, environment_, folder_.path(), scratch_);
  }

  [[nodiscard]] Calls callsToCollect(const std::string& tree, std::size_t pictures) {
    const ProgramAnswer answer =
        trace({std::getenv("LUMIVANE_TOOL"), "collect", "--display", "D", (folder_.path() / tree).string()});
    EXPECT_EQ(answer.status, 0) << answer.err;
    EXPECT_EQ(answer.out, std::to_string(pictures) + "   (# alias dirs = 0)\n");
    return callsIn(contentOf(table_));
  }

  const fs::path table_ = folder_.path() / "calls";
};

TEST_F(SystemCalls, OneForAPictureAndFourForAFolder) {
  ASSERT_TRUE(fs::exists("/usr/bin/strace"));
  if (const ProgramAnswer answer = trace({"/bin/true"}); answer.status != 0)
    GTEST_SKIP() << "nothing may be traced here: " << answer.err;
  makeTree("small", kFiles);
  makeTree("large", 2 * kFiles);
  (void)callsToCollect("large", 2 * kPictures);  // makes the files that the other runs find
  const Calls small = callsToCollect("small", kPictures);
  Calls more = callsToCollect("large", 2 * kPictures);
  for (const auto& [name, count] : small) more[name] -= count;
  const long total = more["total"];
  ASSERT_GT(total, 0);

  // The size and the kind of each picture; nothing of files whose name says that they are none.
  EXPECT_EQ(more["newfstatat"] + more["statx"], static_cast<long>(kPictures));
  // Open it, read its names in one go, see that there are no more, close it.
  EXPECT_EQ(more["openat"], static_cast<long>(kFolders));
  EXPECT_EQ(more["getdents64"], 2 * static_cast<long>(kFolders));
  EXPECT_EQ(more["close"], static_cast<long>(kFolders));
  std::ostringstream all;
  for (const auto& [name, count] : more) all << name << ' ' << count << '\n';
  EXPECT_LE(total, static_cast<long>(kPictures + 4 * kFolders) + kOtherCalls) << all.str();
}

}  // namespace
}  // namespace lumivane

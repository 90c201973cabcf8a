// What it costs to find the pictures of a folder tree on one thread: our walk with its rules for type, size and names to be
// skipped, against the system calls alone (floor) and against `find` with the same rules (find).
//
// Environment: LUMIVANE_BENCH_TREE names the tree; without it one is made in the folder for temporary files (TMPDIR) on
// the first run and stays there: 1,000 folders with 1,000 names each, four fifths of them pictures by name, all of
// them hard links to a few small files, so that it takes a minute and no room. Folders and inodes are in the system's cache.
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "collection/DirectoryWalk.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

constexpr int kFolders = 1000;
constexpr int kNamesPerFolder = 1000;
constexpr int kNamesPerInode = 50'000;  // ext4 allows 65,000
constexpr std::size_t kFileBytes = 4096;
// Both rules as in the settings of a new user, but with a size that some files could fall below.
constexpr std::uint32_t kSmallestKiB = 1;
const std::string kSkipPattern = ".*/thumb.*";

class NoLog final : public Log {
 public:
  void write(std::string_view /*text*/, LogLevel /*level*/) override {}
};

std::string nameOf(int number) {
  static constexpr std::array<const char*, 5> kEndings = {".jpg", ".JPG", ".png", ".heic", ".txt"};
  return "IMG_" + std::to_string(10'000 + number) + kEndings[static_cast<std::size_t>(number % 5)];
}

std::string makeTree(const fs::path& tree) {
  fs::create_directories(tree / "inodes");
  fs::path inode;
  for (int folder = 0, number = 0; folder < kFolders; ++folder) {
    const fs::path place = tree / "pictures" / ("folder " + std::to_string(folder));
    fs::create_directories(place);
    for (int i = 0; i < kNamesPerFolder; ++i, ++number) {
      if (number % kNamesPerInode == 0) {
        inode = tree / "inodes" / std::to_string(number);
        std::ofstream(inode, std::ios::binary) << std::string(kFileBytes, 'x');
      }
      fs::create_hard_link(inode, place / nameOf(i));
    }
  }
  std::ofstream(tree / "complete") << "";
  return (tree / "pictures").string();
}

const std::string& tree() {
  static const std::string path = [] {
    if (const char* given = std::getenv("LUMIVANE_BENCH_TREE")) return std::string(given);
    const fs::path made = fs::temp_directory_path() / "lumivane-bench-tree";
    if (fs::exists(made / "complete")) return (made / "pictures").string();
    fs::remove_all(made);
    return makeTree(made);
  }();
  return path;
}

std::size_t picturesOurWalkFinds() {
  NoLog log;
  DirectoryWalk walk({tree(), kSmallestKiB, {kSkipPattern}, {}, {}}, log);
  walk.scanDirectoryByHand();
  return walk.takeResult().imagefiles.size();
}

// Every name of the tree, and the size of every file: what no walk with a rule for sizes can do without.
std::size_t largeFilesIn(int folder, std::vector<char>& buffer) {
  std::size_t files = 0;
  std::vector<std::string> folders;
  for (;;) {
    const ssize_t bytes = ::getdents64(folder, buffer.data(), buffer.size());
    if (bytes <= 0) break;
    for (ssize_t offset = 0; offset < bytes;) {
      const auto* entry = reinterpret_cast<const dirent64*>(buffer.data() + offset);
      offset += entry->d_reclen;
      if (entry->d_name[0] == '.') continue;
      if (entry->d_type == DT_DIR) folders.emplace_back(entry->d_name);
      struct stat status {};
      if (entry->d_type == DT_REG && ::fstatat(folder, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
          status.st_size > kSmallestKiB * 1024)
        ++files;
    }
  }
  for (const std::string& name : folders) {
    const int inner = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    if (inner < 0) continue;
    files += largeFilesIn(inner, buffer);
    ::close(inner);
  }
  return files;
}

void ours(benchmark::State& state) {
  std::size_t found = picturesOurWalkFinds();
  for (auto _ : state) found = picturesOurWalkFinds();
  if (found == 0) state.SkipWithError("no pictures were found");
  state.counters["pictures"] = static_cast<double>(found);
}

void floorOfCalls(benchmark::State& state) {
  std::vector<char> buffer(std::size_t{128} << 10);
  std::size_t found = 0;
  for (auto _ : state) {
    const int root = ::open(tree().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (root < 0) return state.SkipWithError("no tree");
    found = largeFilesIn(root, buffer);
    ::close(root);
  }
  state.counters["files"] = static_cast<double>(found);
}

double seconds(timeval time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// The processor time that `find` took; negative when it failed.
double runFind() {
  const std::string size = "+" + std::to_string(kSmallestKiB) + "k";
  const std::array<const char*, 14> words = {
      "find",      tree().c_str(), "-type",    "f",
      "-size",     size.c_str(),   "-iregex",  ".*\\.\\(jpe?g\\|png\\|heic\\|gif\\|tiff?\\)",
      "!",         "-path",        "*/thumb*", "-fprint",
      "/dev/null", nullptr};
  std::array<char*, words.size()> arguments{};
  for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = const_cast<char*>(words[i]);
  pid_t child = 0;
  if (::posix_spawnp(&child, "find", nullptr, nullptr, arguments.data(), environ) != 0) return -1;
  int status = 0;
  rusage usage{};
  if (::wait4(child, &status, 0, &usage) != child || status != 0) return -1;
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// The time reported as real is its processor time; this process has none of it.
void find(benchmark::State& state) {
  (void)tree();
  for (auto _ : state) {
    const double time = runFind();
    if (time < 0) return state.SkipWithError("find failed");
    state.SetIterationTime(time);
  }
}

BENCHMARK(ours)->Name("walk-1m/ours")->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(floorOfCalls)->Name("walk-1m/floor")->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(find)->Name("walk-1m/find")->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lumivane

BENCHMARK_MAIN();

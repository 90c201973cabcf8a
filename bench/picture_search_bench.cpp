// What a search without the desktop's index costs: the first one, which has the header of every picture read by the
// decoder process, and those after it, which find every size in the cache and read no file.
//
// Argument: how many pictures; they stay in a folder for temporary files. Each is measured with all files in the system's
// cache, and with their contents thrown out of it before every first search, as they are where pictures were copied a
// while ago. Folders and inodes stay cached in both.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vips/vips8>

#include "collection/index/FolderFiles.h"
#include "collection/index/PictureSearch.h"
#include "imaging/process/ProcessDimensions.h"
#include "platform/linux/DecoderProgram.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SealedMemory.h"
#include "platform/linux/SystemClock.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

constexpr int kPicturesPerFolder = 500;
// What a camera writes before the size: its own data with a small picture, and a colour profile.
constexpr std::size_t kExifBytes = 14'000;
constexpr std::size_t kProfileBytes = 3'144;

class NoLog final : public Log {
 public:
  void write(std::string_view /*text*/, LogLevel /*level*/) override {}
};

std::string segment(char marker, std::string payload, std::size_t bytes) {
  payload.resize(bytes);
  const std::size_t length = bytes + 2;
  return std::string{'\xFF', marker, static_cast<char>(length >> 8), static_cast<char>(length & 0xFF)} +
         payload;
}

// As a camera lays it out, though its picture is small.
std::string cameraJpeg() {
  using namespace std::string_literals;
  const auto grey =
      vips::VImage::gaussnoise(160, 120, vips::VImage::option()->set("sigma", 40)->set("mean", 128));
  VipsBlob* blob = grey.cast(VIPS_FORMAT_UCHAR).jpegsave_buffer();
  std::size_t bytes = 0;
  const void* data = vips_blob_get(blob, &bytes);
  std::string jpeg(static_cast<const char*>(data), bytes);
  vips_area_unref(VIPS_AREA(blob));
  const std::string before = segment('\xE1', "Exif\0\0II*\0\x08\0\0\0\0\0\0\0\0\0"s, kExifBytes) +
                             segment('\xE2', "ICC_PROFILE\0\x01\x01"s, kProfileBytes);
  return jpeg.insert(2, before);
}

std::string pictureName(int number) {
  return std::to_string(number / kPicturesPerFolder) + "/IMG_" + std::to_string(number) + ".jpg";
}

// A tree of that many pictures, made once.
std::string treeOf(int pictures) {
  const fs::path tree = fs::temp_directory_path() / ("lumivane-bench-camera-" + std::to_string(pictures));
  if (fs::exists(tree / "complete")) return tree;
  const std::string jpeg = cameraJpeg();
  for (int i = 0; i < pictures; ++i) {
    const fs::path file = tree / pictureName(i);
    if (i % kPicturesPerFolder == 0) fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << jpeg;
  }
  ::sync();  // what is not on the disk cannot be thrown out of memory
  std::ofstream(tree / "complete") << "";
  return tree;
}

void throwOutContents(const std::string& tree, int pictures) {
  for (int i = 0; i < pictures; ++i) {
    const int file = ::open((tree + "/" + pictureName(i)).c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) continue;
    ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
    ::close(file);
  }
}

enum class Search { FirstFromDisk, FirstFromMemory, Unchanged };

void search(benchmark::State& state, Search kind) {
  const auto pictures = static_cast<int>(state.range(0));
  const std::string tree = treeOf(pictures);
  const std::string cache = tree + ".cache";
  NoLog log;
  PosixFiles files;
  const SystemClock clock;
  ProgramToSpawn program = decoderProgram("", {});
  program.path = LUMIVANE_DECODER;
  SpawnedPrograms programs(program);
  SealedMemories memories;
  DecoderProcesses processes(programs, memories, clock, log, DecoderLimits{}, holdUp);
  ProcessDimensions dimensions(processes);
  FolderFiles index(log);
  const PictureSources sources{{&index}, dimensions, files, cache, log, {}};
  std::size_t found = 0;
  const auto once = [&] {
    searchPictures(sources, {tree, 0, 0}, [&found](const std::string&) { ++found; }, {});
  };
  once();
  for (auto _ : state) {
    state.PauseTiming();
    if (kind != Search::Unchanged) fs::remove(cache);
    if (kind == Search::FirstFromDisk) throwOutContents(tree, pictures);
    found = 0;
    state.ResumeTiming();
    once();
  }
  if (found != static_cast<std::size_t>(pictures)) state.SkipWithError("not all pictures were found");
}

#define LUMIVANE_SEARCH(name, kind)     \
  BENCHMARK_CAPTURE(search, name, kind) \
      ->Arg(100'000)                    \
      ->Unit(benchmark::kMillisecond)   \
      ->UseRealTime()                   \
      ->Iterations(1)
LUMIVANE_SEARCH(first_from_disk, Search::FirstFromDisk);
LUMIVANE_SEARCH(first_from_memory, Search::FirstFromMemory);
LUMIVANE_SEARCH(unchanged, Search::Unchanged);

}  // namespace
}  // namespace lumivane

int main(int count, char** words) {
  if (VIPS_INIT(words[0]) != 0) return 1;
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}

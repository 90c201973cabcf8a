// What a search without the desktop's index costs: the first one, which reads the header of every picture, and those
// after it, which find every size in the cache.
//
// Argument: how many pictures. They stay in a folder for temporary files, and in the system's cache: on a disk the first
// search is dearer still.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vips/vips8>

#include "collection/index/FolderFiles.h"
#include "collection/index/PictureSearch.h"
#include "imaging/decode/HeaderDimensions.h"
#include "platform/linux/PosixFiles.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

constexpr int kPicturesPerFolder = 500;

class NoLog final : public Log {
 public:
  void write(std::string_view /*text*/, LogLevel /*level*/) override {}
};

std::string smallJpeg() {
  const auto grey =
      vips::VImage::gaussnoise(64, 48, vips::VImage::option()->set("sigma", 40)->set("mean", 128));
  VipsBlob* blob = grey.cast(VIPS_FORMAT_UCHAR).jpegsave_buffer();
  std::size_t bytes = 0;
  const void* data = vips_blob_get(blob, &bytes);
  std::string jpeg(static_cast<const char*>(data), bytes);
  vips_area_unref(VIPS_AREA(blob));
  return jpeg;
}

// A tree of that many pictures, made once.
std::string treeOf(int pictures) {
  const fs::path tree = fs::temp_directory_path() / ("lumivane-bench-tree-" + std::to_string(pictures));
  if (fs::exists(tree / "complete")) return tree;
  const std::string jpeg = smallJpeg();
  for (int i = 0; i < pictures; ++i) {
    const fs::path folder = tree / std::to_string(i / kPicturesPerFolder);
    if (i % kPicturesPerFolder == 0) fs::create_directories(folder);
    std::ofstream(folder / ("IMG_" + std::to_string(i) + ".jpg"), std::ios::binary) << jpeg;
  }
  std::ofstream(tree / "complete") << "";
  return tree;
}

void search(benchmark::State& state, bool isFirst) {
  const std::string tree = treeOf(static_cast<int>(state.range(0)));
  const std::string cache = tree + ".cache";
  NoLog log;
  PosixFiles files;
  HeaderDimensions dimensions;
  FolderFiles index(log);
  const PictureSources sources{{&index}, dimensions, files, cache, log, {}};
  std::size_t found = 0;
  const auto once = [&] {
    searchPictures(sources, {tree, 0, 0}, [&found](const std::string&) { ++found; }, {});
  };
  if (!isFirst) once();
  for (auto _ : state) {
    state.PauseTiming();
    if (isFirst) fs::remove(cache);
    found = 0;
    state.ResumeTiming();
    once();
  }
  state.counters["found"] = static_cast<double>(found);
}

BENCHMARK_CAPTURE(search, first, true)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(search, unchanged, false)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace lumivane

int main(int count, char** words) {
  if (VIPS_INIT(words[0]) != 0) return 1;
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}

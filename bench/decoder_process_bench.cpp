// What it costs to have pictures decoded by another process: processor time of both together, with a picture's pixels
// read once as for an upload.
//
// Arguments: megapixels, and how many pictures are kept as the history keeps them. The time is processor time.
#include <benchmark/benchmark.h>
#include <time.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <vips/vips8>

#include "imaging/decode/FileImageDecoder.h"
#include "imaging/process/ProcessImageDecoder.h"
#include "platform/linux/DecoderProgram.h"
#include "platform/linux/SealedMemory.h"
#include "platform/linux/StderrLog.h"
#include "platform/linux/SystemClock.h"

namespace lumivane {
namespace {

// A JPEG about as detailed as a photograph, in a folder for temporary files.
std::string pictureOf(int megapixels) {
  const int width = 1000 * static_cast<int>(std::lround(std::sqrt(megapixels * 1.5)));
  const int height = width * 2 / 3;
  const std::string path =
      std::filesystem::temp_directory_path() / ("lumivane-bench-" + std::to_string(megapixels) + ".jpg");
  if (std::filesystem::exists(path)) return path;
  const auto channel = [&] {
    return vips::VImage::gaussnoise(width, height, vips::VImage::option()->set("sigma", 60)->set("mean", 128))
        .gaussblur(1.5);
  };
  vips::VImage::bandjoin({channel(), channel(), channel()})
      .cast(VIPS_FORMAT_UCHAR)
      .copy(vips::VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
      .jpegsave(path.c_str(), vips::VImage::option()->set("Q", 85));
  return path;
}

double processorSeconds(clockid_t clock) {
  timespec time{};
  ::clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Of this process and of the children that it had when this was made: to look for them costs time that would count.
class FamilyClock {
 public:
  FamilyClock() {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
      std::ifstream children(task.path() / "children");
      for (pid_t child = 0; children >> child;) {
        clockid_t clock = 0;
        if (::clock_getcpuclockid(child, &clock) == 0) clocks_.push_back(clock);
      }
    }
  }
  [[nodiscard]] double seconds() const {
    double sum = 0;
    for (const clockid_t clock : clocks_) sum += processorSeconds(clock);
    return sum;
  }

 private:
  std::vector<clockid_t> clocks_{CLOCK_PROCESS_CPUTIME_ID};
};

// All of it, as an upload does it: in slices.
void readOnce(const Bitmap& bitmap) {
  static std::vector<std::byte> slice(std::size_t{1} << 20);
  for (auto bytes = bitmap.bytes(); !bytes.empty();) {
    const std::size_t some = std::min(bytes.size(), slice.size());
    std::memcpy(slice.data(), bytes.data(), some);
    benchmark::DoNotOptimize(slice.data());
    bytes = bytes.subspan(some);
  }
}

void show(benchmark::State& state, ImageDecoder& decoder) {
  const std::string path = pictureOf(static_cast<int>(state.range(0)));
  const auto kept = static_cast<std::size_t>(state.range(1));
  std::deque<BitmapRef> history;
  const auto next = [&] {
    const auto source = decoder.open(path);
    (void)source->properties();
    history.push_back(source->thumbnail(kThumbnailMaxPixelSize));
    if (!history.back()) return false;
    readOnce(*history.back());
    if (history.size() > kept) history.pop_front();
    return true;
  };
  for (std::size_t i = 0; i < kept + 3; ++i) {  // until all memory there will be is there
    if (!next()) return state.SkipWithError("the picture was not decoded");
  }
  const FamilyClock clock;
  for (auto _ : state) {
    const double before = clock.seconds();
    if (!next()) return state.SkipWithError("the picture was not decoded");
    state.SetIterationTime(clock.seconds() - before);
  }
}

void inThisProcess(benchmark::State& state) {
  FileImageDecoder decoder;
  show(state, decoder);
}

void inAnotherProcess(benchmark::State& state) {
  const SystemClock clock;
  StderrLog log(clock, STDERR_FILENO);
  ProgramToSpawn program = decoderProgram("", {});
  program.path = LUMIVANE_DECODER;
  SpawnedPrograms programs(program);
  SealedMemories memories;
  DecoderProcesses processes(programs, memories, clock, log, DecoderLimits{}, holdUp);
  ProcessImageDecoder decoder(processes);
  show(state, decoder);
}

// Until the process has answered for the first time.
void start(benchmark::State& state) {
  const SystemClock clock;
  StderrLog log(clock, STDERR_FILENO);
  ProgramToSpawn program = decoderProgram("", {});
  program.path = LUMIVANE_DECODER;
  SealedMemories memories;
  for (auto _ : state) {
    SpawnedPrograms programs(program);
    DecoderProcesses processes(programs, memories, clock, log, DecoderLimits{}, holdUp);
    if (!processes.take()) return state.SkipWithError("no process");
  }
}

#define LUMIVANE_SIZES ->Args({1, 1})->Args({6, 12})->Args({24, 1})->Args({24, 12})
BENCHMARK(inThisProcess) LUMIVANE_SIZES->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(inAnotherProcess) LUMIVANE_SIZES->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(start)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lumivane

BENCHMARK_MAIN();

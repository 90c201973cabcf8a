// What the smaller levels of a picture cost, beside the decoding of the JPEG that they are made of (libjpeg-turbo with
// nothing around it, the least that decoding can be).
//
// No arguments; the picture is made on the first run and stays in the folder for temporary files (TMPDIR).
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "BenchPictures.h"
#include "CodecFloors.h"
#include "imaging/decode/MipChain.h"
#include "imaging/decode/VipsCodec.h"

namespace lumivane {
namespace {

// Detail as in a photograph: what is halved does not cost more or less for it, but nothing can be guessed either.
void fill(std::span<std::byte> bytes) {
  unsigned state = 1;
  for (std::byte& byte : bytes) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<std::byte>(state >> 24);
  }
}

void levels(benchmark::State& state) {
  PixelPool pool;
  const auto places = packedLevels(k24Megapixels);
  PixelBuffer pixels = pool.take(packedLevelsBytes(k24Megapixels));
  fill(pixels.bytes());
  for (auto _ : state) {
    buildMipChain(pixels.bytes(), places);
    benchmark::DoNotOptimize(pixels.bytes().back());
  }
}

void decode(benchmark::State& state) {
  PixelPool pool;
  const std::string path = jpegPicture(k24Megapixels, JpegKind::Plain);
  std::vector<std::byte> bytes(std::filesystem::file_size(path));
  std::ifstream(path, std::ios::binary)
      .read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!decodeJpegAlone(bytes, pool)) return state.SkipWithError("the picture cannot be read");
  for (auto _ : state) {
    if (!decodeJpegAlone(bytes, pool)) return state.SkipWithError("the picture cannot be read");
  }
}

BENCHMARK(levels)->Name("mip-levels-24mp/ours")->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(decode)->Name("mip-levels-24mp/decode")->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lumivane

int main(int count, char** words) {
  if (!lumivane::startVips()) return 1;
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
}

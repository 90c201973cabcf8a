// What it costs to get a picture into memory, without its mip levels (mipmap_bench has those): ours, as the decoder process
// does it, against the format's library with nothing around it (floor) and against what other programs use.
//
// No arguments; the pictures are made on the first run and stay in the folder for temporary files (TMPDIR), 350 MB. The time that
// counts is processor time of all threads. Pictures are read from the system's cache.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BenchPictures.h"
#include "CodecFloors.h"
#include "PeerLoaders.h"
#include "ShrinkReference.h"
#include "imaging/decode/FileImageDecoder.h"
#include "imaging/decode/MipChain.h"
#include "imaging/decode/VipsCodec.h"

namespace lumivane {

// Stands in this program for the one of imaging/decode, so that decoding is measured without the mip levels.
void buildMipChain(std::span<std::byte> /*pixels*/, std::span<const BitmapLevel> /*levels*/) {}

namespace {

// More than this, and a shrunk picture looks worse than one shrunk by a good filter.
constexpr double kMostMeanError = 2;

using Loading = std::function<bool()>;

struct Work {
  std::string name;
  std::string path;
};

std::vector<std::byte> contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<std::byte> bytes(std::filesystem::file_size(path));
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

void load(benchmark::State& state, const Loading& loading) {
  if (!loading())
    return state.SkipWithError("the picture cannot be read");  // and memory is there from here on
  for (auto _ : state) {
    if (!loading()) return state.SkipWithError("the picture cannot be read");
  }
}

void add(const Work& work, const std::string& who, const Loading& loading) {
  benchmark::RegisterBenchmark((work.name + "/" + who).c_str(),
                               [loading](benchmark::State& state) { load(state, loading); })
      ->MeasureProcessCPUTime()
      ->Unit(benchmark::kMillisecond);
}

BitmapRef ourPicture(FileImageDecoder& decoder, const std::string& path) {
  const auto source = decoder.open(path);
  return source ? source->thumbnail(kThumbnailMaxPixelSize) : nullptr;
}

void addOurs(const Work& work) {
  add(work, "ours", [decoder = std::make_shared<FileImageDecoder>(), path = work.path] {
    return ourPicture(*decoder, path) != nullptr;
  });
}

void addFloor(const Work& work, const CodecFloor& floor, const std::string& who = "floor") {
  const auto pool = std::make_shared<PixelPool>();
  const auto file = std::make_shared<std::vector<std::byte>>();
  add(work, who, [=, path = work.path] {
    if (file->empty()) *file = contentOf(path);
    return floor(*file, *pool);
  });
}

void addImlib(const Work& work) {
  add(work, "imlib2", [path = work.path] { return loadWithImlib(path).has_value(); });
}

void addQt(const Work& work, QtWish wish) {
  add(work, "qt", [path = work.path, wish] { return loadWithQt(path, wish).has_value(); });
}

void addVips(const Work& work) {
  add(work, "vips", [path = work.path] { return loadWithVips(path, kThumbnailMaxPixelSize).has_value(); });
}

// The turned picture must come out turned, or less was done than was asked for.
void addTurnedPeers(const Work& work) {
  const auto upright = [](std::optional<SizePx> size) { return size && size->height > size->width; };
  add(work, "imlib2", [=, path = work.path] { return upright(loadWithImlib(path)); });
  add(work, "qt", [=, path = work.path] { return upright(loadWithQt(path, {})); });
  add(work, "vips", [=, path = work.path] { return upright(loadWithVips(path, kThumbnailMaxPixelSize)); });
}

double ourMeanError(const std::string& path) {
  FileImageDecoder decoder;
  const BitmapRef picture = ourPicture(decoder, path);
  if (!picture) return 255;
  const auto* pixels = reinterpret_cast<const std::uint8_t*>(picture->levelBytes(0).data());
  return meanError(path, pixels, picture->storedSize(), 4);
}

double meanErrorOfQt(const std::string& path) {
  SizePx size;
  const auto pixels = pixelsOfQt(path, {.longestSide = kThumbnailMaxPixelSize}, size);
  return pixels.empty() ? 255 : meanError(path, pixels.data(), size, 3);
}

// With how far the result is from a full decode and a good shrink, which is found out once.
void addShrunk(const Work& work, const std::string& who, const Loading& loading,
               const std::function<double(const std::string&)>& errorOf, double mostError) {
  const auto error = std::make_shared<std::optional<double>>();
  const auto run = [=, path = work.path](benchmark::State& state) {
    if (!*error) *error = errorOf(path);
    load(state, loading);
    state.counters["mean_error"] = **error;
    if (**error > mostError) state.SkipWithError("the shrunk picture is too far from what it ought to be");
  };
  benchmark::RegisterBenchmark((work.name + "/" + who).c_str(), run)
      ->MeasureProcessCPUTime()
      ->Unit(benchmark::kMillisecond);
}

void addShrinkingWork(const Work& work) {
  const QtWish wish{.longestSide = kThumbnailMaxPixelSize};
  const auto decoder = std::make_shared<FileImageDecoder>();
  addShrunk(
      work, "ours", [=, path = work.path] { return ourPicture(*decoder, path) != nullptr; }, &ourMeanError,
      kMostMeanError);
  addShrunk(
      work, "qt", [=, path = work.path] { return loadWithQt(path, wish).has_value(); }, &meanErrorOfQt, 255);
  addFloor(work, &decodeJpegAlone);
  addVips(work);
}

void addJpegWorks() {
  const Work plain{"jpeg-24mp", jpegPicture(k24Megapixels, JpegKind::Plain)};
  addOurs(plain);
  addFloor(plain, &decodeJpegAlone);
  addFloor(plain, &decodeJpegPlanesAlone, "floor-planar");
  addImlib(plain);
  addQt(plain, {});
  addVips(plain);

  const Work turned{"jpeg-24mp-turned", jpegPicture(k24Megapixels, JpegKind::QuarterTurn)};
  addOurs(turned);
  addFloor(turned, &decodeJpegAlone);
  addTurnedPeers(turned);

  const Work progressive{"jpeg-24mp-progressive", jpegPicture(k24Megapixels, JpegKind::Progressive)};
  addOurs(progressive);
  addFloor(progressive, &decodeJpegAlone);
  addImlib(progressive);
  addQt(progressive, {});

  const Work wide{"jpeg-24mp-display-p3", jpegPicture(k24Megapixels, JpegKind::DisplayP3)};
  addOurs(wide);
  addFloor(wide, &decodeJpegAlone);
  addQt(wide, {.toSrgb = true});
  addVips(wide);

  addShrinkingWork({"jpeg-45mp", jpegPicture(k45Megapixels, JpegKind::Plain)});
  addShrinkingWork({"jpeg-100mp", jpegPicture(k100Megapixels, JpegKind::Plain)});
}

void addOtherWorks() {
  const std::vector<std::pair<Work, CodecFloor>> works = {
      {{"png-24mp", pngPicture(k24Megapixels)}, &decodePngAlone},
      {{"tiff-24mp", tiffPicture(k24Megapixels)}, &decodeTiffAlone},
      {{"webp-12mp", webpPicture(k12Megapixels)}, &decodeWebpAlone},
      {{"heic-24mp", heicPicture(k24Megapixels)}, &decodeHeifAlone},
      {{"avif-12mp", avifPicture(k12Megapixels)}, &decodeHeifAlone},
  };
  for (const auto& [work, floor] : works) {
    addOurs(work);
    addFloor(work, floor);
    addImlib(work);
  }
  addQt(works.front().first, {});
}

}  // namespace
}  // namespace lumivane

int main(int count, char** words) {
  const QCoreApplication application(count, words);  // finds Qt's plugins for picture formats
  if (!lumivane::startVips()) return 1;
  benchmark::Initialize(&count, words);
  lumivane::addJpegWorks();
  lumivane::addOtherWorks();
  benchmark::RunSpecifiedBenchmarks();
}

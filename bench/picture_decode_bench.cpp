// What it costs to get a picture into memory, without its mip levels (mipmap_bench has those): ours, as the decoder process
// does it, against the format's library with nothing around it (floor) and against what other programs use.
//
// No arguments; pictures are made when they are first needed and stay in the folder for temporary files (TMPDIR), 200 MB;
// the HEIC takes minutes. The time that counts is processor time of all threads. Pictures are read from the system's cache.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
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

// Reads the picture at a path; false when it cannot be read.
using Loading = std::function<bool(const std::string& path)>;

struct Work {
  std::string name;
  std::function<std::string()> picture;  // makes it when it is not there; its path
};

std::vector<std::byte> contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<std::byte> bytes(std::filesystem::file_size(path));
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

void load(benchmark::State& state, const std::string& path, const Loading& loading) {
  if (!loading(path))
    return state.SkipWithError("the picture cannot be read");  // memory is there from here on
  for (auto _ : state) {
    if (!loading(path)) return state.SkipWithError("the picture cannot be read");
  }
}

void add(const Work& work, const std::string& who, const Loading& loading) {
  const auto run = [=, picture = work.picture](benchmark::State& state) { load(state, picture(), loading); };
  benchmark::RegisterBenchmark((work.name + "/" + who).c_str(), run)
      ->MeasureProcessCPUTime()
      ->Unit(benchmark::kMillisecond);
}

BitmapRef ourPicture(FileImageDecoder& decoder, const std::string& path) {
  const auto source = decoder.open(path);
  return source ? source->thumbnail(kThumbnailMaxPixelSize) : nullptr;
}

Loading ourLoading() {
  return [decoder = std::make_shared<FileImageDecoder>()](const std::string& path) {
    return ourPicture(*decoder, path) != nullptr;
  };
}

void addOurs(const Work& work) {
  add(work, "ours", ourLoading());
}

void addFloor(const Work& work, const CodecFloor& floor, const std::string& who = "floor") {
  const auto pool = std::make_shared<PixelPool>();
  const auto file = std::make_shared<std::vector<std::byte>>();
  add(work, who, [=](const std::string& path) {
    if (file->empty()) *file = contentOf(path);
    return floor(*file, *pool);
  });
}

// The turned picture must come out turned, or less was done than was asked for.
enum class Shape { Any, Upright };

bool has(Shape shape, std::optional<SizePx> size) {
  return size && (shape == Shape::Any || size->height > size->width);
}

void addImlib(const Work& work, Shape shape = Shape::Any) {
  add(work, "imlib2", [=](const std::string& path) { return has(shape, loadWithImlib(path)); });
}

void addQt(const Work& work, QtWish wish, Shape shape = Shape::Any) {
  add(work, "qt", [=](const std::string& path) { return has(shape, loadWithQt(path, wish)); });
}

void addVips(const Work& work, Shape shape = Shape::Any) {
  add(work, "vips",
      [=](const std::string& path) { return has(shape, loadWithVips(path, kThumbnailMaxPixelSize)); });
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
  const auto run = [=, picture = work.picture](benchmark::State& state) {
    const std::string path = picture();
    if (!*error) *error = errorOf(path);
    load(state, path, loading);
    state.counters["mean_error"] = **error;
    if (**error > mostError) state.SkipWithError("the shrunk picture is too far from what it ought to be");
  };
  benchmark::RegisterBenchmark((work.name + "/" + who).c_str(), run)
      ->MeasureProcessCPUTime()
      ->Unit(benchmark::kMillisecond);
}

void addShrinkingWork(const Work& work) {
  const QtWish wish{.longestSide = kThumbnailMaxPixelSize};
  const Loading withQt = [=](const std::string& path) { return loadWithQt(path, wish).has_value(); };
  addShrunk(work, "ours", ourLoading(), &ourMeanError, kMostMeanError);
  addShrunk(work, "qt", withQt, &meanErrorOfQt, 255);
  addFloor(work, &decodeJpegAlone);
  addVips(work);
}

Work jpegWork(const std::string& name, SizePx size, JpegKind kind) {
  return {name, [=] { return jpegPicture(size, kind); }};
}

void addJpegWorks() {
  const Work plain = jpegWork("jpeg-24mp", k24Megapixels, JpegKind::Plain);
  addOurs(plain);
  addFloor(plain, &decodeJpegAlone);
  addFloor(plain, &decodeJpegPlanesAlone, "floor-planar");
  addImlib(plain);
  addQt(plain, {});
  addVips(plain);

  const Work turned = jpegWork("jpeg-24mp-turned", k24Megapixels, JpegKind::QuarterTurn);
  addOurs(turned);
  addFloor(turned, &decodeJpegAlone);
  addImlib(turned, Shape::Upright);
  addQt(turned, {}, Shape::Upright);
  addVips(turned, Shape::Upright);

  const Work progressive = jpegWork("jpeg-24mp-progressive", k24Megapixels, JpegKind::Progressive);
  addOurs(progressive);
  addFloor(progressive, &decodeJpegAlone);
  addImlib(progressive);
  addQt(progressive, {});

  const Work wide = jpegWork("jpeg-24mp-display-p3", k24Megapixels, JpegKind::DisplayP3);
  addOurs(wide);
  addFloor(wide, &decodeJpegAlone);
  addQt(wide, {.toSrgb = true});
  addVips(wide);

  addShrinkingWork(jpegWork("jpeg-45mp", k45Megapixels, JpegKind::Plain));
  addShrinkingWork(jpegWork("jpeg-100mp", k100Megapixels, JpegKind::Plain));
}

void addOtherWorks() {
  const std::vector<std::pair<Work, CodecFloor>> works = {
      {{"png-24mp", [] { return pngPicture(k24Megapixels); }}, &decodePngAlone},
      {{"tiff-24mp", [] { return tiffPicture(k24Megapixels); }}, &decodeTiffAlone},
      {{"webp-12mp", [] { return webpPicture(k12Megapixels); }}, &decodeWebpAlone},
      {{"heic-24mp", [] { return heicPicture(k24Megapixels); }}, &decodeHeifAlone},
      {{"avif-12mp", [] { return avifPicture(k12Megapixels); }}, &decodeHeifAlone},
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

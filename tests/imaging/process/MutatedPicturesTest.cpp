// Damaged pictures of every format through the real process: each is shown or refused, and the show never notices more.
//
// LUMIVANE_MUTATIONS says how many (300 if it is not set), LUMIVANE_SEED which (1).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>

#include "imaging/process/ProcessImageDecoder.h"
#include "platform/linux/DecoderProgram.h"
#include "platform/linux/SealedMemory.h"
#include "tests/imaging/MadePictures.h"
#include "tests/imaging/SampleManifest.h"
#include "tests/support/LevelPixels.h"
#include "tests/support/RealClock.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

constexpr std::size_t kLargestOriginal =
    400'000;  // larger ones say no more about broken files, and take longer
constexpr int kSide = 1024;

int numberFrom(const char* variable, int otherwise) {
  const char* value = std::getenv(variable);
  return value != nullptr ? std::atoi(value) : otherwise;
}

class Damage {
 public:
  explicit Damage(unsigned seed) : random_(seed) {}

  std::string to(const std::string& original, const std::string& other) {
    std::string bytes = original;
    switch (below(5)) {
      case 0:  // cut
        bytes.resize(below(bytes.size()));
        break;
      case 1: {  // the end of another file
        bytes.resize(below(bytes.size()));
        bytes += other.substr(below(other.size()));
        break;
      }
      case 2: {  // a part lost, or there twice
        const std::size_t from = below(bytes.size());
        const std::size_t count = below(std::min<std::size_t>(bytes.size() - from, 4096));
        below(2) == 0 ? bytes.erase(from, count) : bytes.insert(from, bytes.substr(from, count));
        break;
      }
      default:  // single bytes, most of them where the structure is told
        for (std::size_t flips = 1 + below(32); flips > 0; --flips) {
          const std::size_t range = below(2) == 0 ? std::min<std::size_t>(bytes.size(), 1024) : bytes.size();
          bytes[below(range)] = static_cast<char>(below(256));
        }
    }
    return bytes;
  }
  // A number from 0 to one below the limit; 0 for no limit at all.
  std::size_t below(std::size_t limit) {
    return limit == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
  }

 private:
  std::mt19937 random_;
};

std::vector<std::string> originals(const TemporaryFolder& folder) {
  std::vector<std::string> contents;
  for (const char* extension : {"jpg", "png", "gif", "tif", "webp", "heic", "avif", "jxl", "jp2"}) {
    const std::string file = folder / (std::string("made.") + extension);
    fourQuartersTurned(160, 120, 6).write_to_file(file.c_str());
    contents.push_back(fileContent(file));
  }
  for (const SampleRow& row : sampleRows("photos/")) {
    const std::filesystem::path file = *samplesFolder() / row.file();
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (!error && size > 0 && size <= kLargestOriginal) contents.push_back(fileContent(file));
  }
  return contents;
}

// Everything that the renderer would read is read.
std::uint64_t sumOf(const Bitmap& bitmap) {
  std::uint64_t sum = 0;
  for (std::size_t level = 0; level < bitmap.levels().size(); ++level) {
    for (const std::byte byte : levelPixels(bitmap, level)) sum += static_cast<std::uint64_t>(byte);
  }
  return sum;
}

TEST(MutatedPictures, AreShownOrRefused) {
  const TemporaryFolder folder;
  const std::vector<std::string> pictures = originals(folder);
  const RealClock clock;
  RecordingLog log;
  ProgramToSpawn program = decoderProgram("", environmentFrom(environ));
  program.path = std::getenv("LUMIVANE_DECODER");
  SpawnedPrograms programs(program);
  SealedMemories memories;
  DecoderProcesses processes(programs, memories, clock, log, {}, [](Nanoseconds) {});
  ProcessImageDecoder decoder(processes);

  Damage damage(static_cast<unsigned>(numberFrom("LUMIVANE_SEED", 1)));
  const int count = numberFrom("LUMIVANE_MUTATIONS", 300);
  int shown = 0;
  std::uint64_t sum = 0;
  for (int i = 0; i < count; ++i) {
    const std::string file = folder / ("damaged " + std::to_string(i));
    writeFile(file,
              damage.to(pictures[damage.below(pictures.size())], pictures[damage.below(pictures.size())]));
    SCOPED_TRACE(file);
    const auto source = decoder.open(file);
    const BitmapRef bitmap = source ? source->thumbnail(kSide) : nullptr;
    if (bitmap) {
      ++shown;
      const SizePx size = bitmap->storedSize();
      ASSERT_TRUE(size.width > 0 && size.height > 0 && std::max(size.width, size.height) <= kSide);
      ASSERT_TRUE(bitmap->orientation() >= 1 && bitmap->orientation() <= 8);
      sum += sumOf(*bitmap);
    }
    std::filesystem::remove(file);
  }
  std::cout << count << " of " << pictures.size() << " originals: " << shown << " shown, " << count - shown
            << " refused, " << log.entries().size() << " lines in the log (sum " << sum << ")\n";
  EXPECT_GT(shown, 0);
  EXPECT_LT(shown, count);
  const auto good = decoder.open(folder / "made.jpg");
  ASSERT_NE(good, nullptr);
  EXPECT_NE(good->thumbnail(kSide), nullptr);
}

}  // namespace
}  // namespace lumivane

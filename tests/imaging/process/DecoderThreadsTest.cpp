// Several jobs at the same time, each with a process of its own. The pictures are written by hand: a library that makes
// them would bring threads of its own, into which ThreadSanitizer cannot see.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <thread>

#include "imaging/process/ProcessImageDecoder.h"
#include "platform/linux/DecoderProgram.h"
#include "platform/linux/SealedMemory.h"
#include "tests/support/RealClock.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

constexpr int kWidth = 64;
constexpr int kHeight = 48;

void put(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
}

// A Windows bitmap of 24 bits a pixel, all of one grey.
std::string greyBitmap(std::uint8_t grey) {
  constexpr std::uint32_t kHeader = 54;
  std::string bytes = "BM";
  put(bytes, kHeader + 3 * kWidth * kHeight, 4);
  put(bytes, 0, 4);
  put(bytes, kHeader, 4);
  put(bytes, 40, 4);
  put(bytes, kWidth, 4);
  put(bytes, kHeight, 4);
  put(bytes, 1, 2);
  put(bytes, 24, 2);
  for (int i = 0; i < 6; ++i) put(bytes, 0, 4);
  return bytes.append(std::size_t{3} * kWidth * kHeight, static_cast<char>(grey));
}

TEST(DecoderThreads, EachJobGetsItsOwnPicture) {
  constexpr std::uint8_t kThreads = 4;
  constexpr int kRounds = 8;
  const TemporaryFolder folder;
  const RealClock clock;
  RecordingLog log;
  ProgramToSpawn program = decoderProgram("", environmentFrom(environ));
  program.path = std::getenv("LUMIVANE_DECODER");
  SpawnedPrograms programs(program);
  SealedMemories memories;
  DecoderLimits limits;
  limits.start = limits.picture = std::chrono::seconds(60);
  DecoderProcesses processes(programs, memories, clock, log, limits, [](Nanoseconds) {});
  ProcessImageDecoder decoder(processes);
  std::atomic<int> right = 0;
  {
    std::vector<std::jthread> threads;
    for (std::uint8_t number = 0; number < kThreads; ++number) {
      const auto grey = static_cast<std::uint8_t>(20 + 50 * number);
      const std::string file = folder.write("picture " + std::to_string(number), greyBitmap(grey));
      threads.emplace_back([&decoder, &right, file, grey] {
        for (int round = 0; round < kRounds; ++round) {
          const auto source = decoder.open(file);
          const BitmapRef bitmap = source ? source->thumbnail(kWidth) : nullptr;
          if (bitmap && bitmap->levelBytes(0).front() == std::byte{grey}) ++right;
        }
      });
    }
  }
  EXPECT_EQ(right, kThreads * kRounds);
}

}  // namespace
}  // namespace lumivane

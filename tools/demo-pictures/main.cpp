// lumivane-demo-pictures FOLDER [PERCENT]: paints the demonstration pictures into the folder, in the given part of
// their size. The same pictures come out every time.
#include <atomic>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "platform/PrintableText.h"
#include "tools/demo-pictures/PictureFile.h"

namespace {

using namespace lumivane;
using namespace lumivane::demo;

bool paintInto(const std::string& folder, const DemoPicture& picture, int percent) {
  Canvas canvas(picture.format.width * percent / 100, picture.format.height * percent / 100);
  picture.paint(canvas);
  const Result<Done> written = writePicture(canvas, picture, folder + "/" + picture.fileName);
  if (!written) std::fprintf(stderr, "lumivane-demo-pictures: %s\n", printable(written.error()).c_str());
  return written.ok();
}

// Every processor takes the next picture as soon as it is done with one; four at most, as each takes 100 MB.
bool paintAll(const std::string& folder, int percent) {
  const std::vector<DemoPicture> pictures = demoPictures();
  std::atomic<std::size_t> next = 0;
  std::atomic<bool> allWell = true;
  const auto work = [&] {
    for (std::size_t i = next++; i < pictures.size(); i = next++) {
      if (!paintInto(folder, pictures[i], percent)) allWell = false;
    }
  };
  std::vector<std::jthread> painters;
  for (unsigned i = 0; i < std::clamp(std::thread::hardware_concurrency(), 1U, 4U); ++i)
    painters.emplace_back(work);
  painters.clear();
  return allWell;
}

int percentFrom(const char* text) {
  int percent = 0;
  const std::string_view digits = text;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), percent);
  const bool good =
      error == std::errc{} && end == digits.data() + digits.size() && percent >= 1 && percent <= 200;
  return good ? percent : 0;
}

}  // namespace

int main(int argc, char** argv) {
  const int percent = argc == 3 ? percentFrom(argv[2]) : 100;
  if (argc < 2 || argc > 3 || argv[1][0] == '-' || percent == 0) {
    std::fputs("usage: lumivane-demo-pictures FOLDER [PERCENT]\n", stderr);
    return 2;
  }
  std::error_code failure;
  std::filesystem::create_directories(argv[1], failure);
  if (failure) {
    std::fprintf(stderr, "lumivane-demo-pictures: %s: %s\n", printable(argv[1]).c_str(),
                 failure.message().c_str());
    return 1;
  }
  return paintAll(argv[1], percent) ? 0 : 1;
}

// What it costs to put a million paths into the order of a file browser: ours, against ICU's sort keys of whole paths
// with numbers by their value (icu), which is the usual way to such an order.
//
// No arguments. The paths are those of 1,000 folders with 1,000 pictures each: "ascii" names as cameras and people who
// write English give them, "mixed" names of which some have accents and some are Chinese or Japanese. They come as a walk
// finds them, folder by folder; in "shuffled" in no order at all.
#include <benchmark/benchmark.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "collection/FileNameOrder.h"

namespace lumivane {
namespace {

constexpr int kFolders = 1000;
constexpr int kPicturesPerFolder = 1000;
constexpr const char* kLocale = "en_US";

enum class Names { Ascii, Mixed };
enum class Arrival { AsWalked, Shuffled };
using Paths = std::vector<std::string>;

struct Manner {
  const char* folder;
  const char* picture;
  const char* ending;
};

constexpr Manner kAsciiManners[] = {
    {"Holiday in Norway ", "IMG_", ".jpg"},
    {"camera-roll-", "DSC0", ".JPG"},
    {"Garden & House ", "garden (", ").jpeg"},
    {"2019-07-", "PXL_20190712_", "~2.jpg"},
};
constexpr Manner kMixedManners[] = {
    {"Holiday in Norway ", "IMG_", ".jpg"},
    {"Ferien in \xC3\x96sterreich ",
     "\xC3\x9C"
     "berfahrt_",
     ".jpg"},
    {"\xE4\xBA\xAC\xE9\x83\xBD\xE6\x97\x85\xE8\xA1\x8C ", "\xE5\x86\x99\xE7\x9C\x9F", ".jpg"},
    {"\xC3\x89t\xC3\xA9 \xC3\xA0 la mer ", "P10", ".JPG"},
};

// Each folder has the manner of its number. In a folder with mixed names every fourth picture has another folder's.
Paths madePaths(Names names, Arrival arrival) {
  const auto& manners = names == Names::Ascii ? kAsciiManners : kMixedManners;
  std::mt19937 random(7);
  Paths folders;
  for (int i = 0; i < kFolders; ++i) {
    folders.push_back("/home/anna/Pictures/" + std::to_string(2000 + i / 50) + "/" + manners[i % 4].folder +
                      std::to_string(i) + "/");
  }
  std::shuffle(folders.begin(), folders.end(), random);
  Paths paths;
  for (std::size_t i = 0; i < folders.size(); ++i) {
    const std::size_t begin = paths.size();
    for (std::size_t k = 0; k < kPicturesPerFolder; ++k) {
      const Manner& manner = manners[(i + (k % 4 == 0 ? k / 4 : 0)) % 4];
      paths.push_back(folders[i] + manner.picture + std::to_string(1000 + k) + manner.ending);
    }
    std::shuffle(paths.begin() + static_cast<std::ptrdiff_t>(begin), paths.end(), random);
  }
  if (arrival == Arrival::Shuffled) std::shuffle(paths.begin(), paths.end(), random);
  return paths;
}

const Paths& pathsOf(Names names, Arrival arrival) {
  static Paths kept[2][2];
  Paths& paths = kept[static_cast<int>(names)][static_cast<int>(arrival)];
  if (paths.empty()) paths = madePaths(names, arrival);
  return paths;
}

// The keys one after the other in one block of memory.
class Keys {
 public:
  explicit Keys(const UCollator& collator) : collator_(collator) {}

  void append(const std::string& path) {
    char16_t text[1024];
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(text, 1024, &length, path.data(), static_cast<std::int32_t>(path.size()), &status);
    std::uint8_t key[1024];
    const std::int32_t bytes = ucol_getSortKey(&collator_, text, length, key, sizeof key);
    places_.push_back(bytes_.size());
    bytes_.insert(bytes_.end(), key, key + bytes);
  }
  // Each key ends with a zero byte.
  [[nodiscard]] const char* key(std::size_t i) const {
    return reinterpret_cast<const char*>(bytes_.data()) + places_[i];
  }

 private:
  const UCollator& collator_;
  std::vector<std::uint8_t> bytes_;
  std::vector<std::size_t> places_;
};

void sortByIcuKeys(Paths& paths) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UCollator, decltype(&ucol_close)> collator(ucol_open(kLocale, &status), &ucol_close);
  ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
  Keys keys(*collator);
  for (const std::string& path : paths) keys.append(path);
  std::vector<std::uint32_t> order(paths.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::uint32_t>(i);
  std::sort(order.begin(), order.end(),
            [&](std::uint32_t a, std::uint32_t b) { return std::strcmp(keys.key(a), keys.key(b)) < 0; });
  Paths sorted;
  sorted.reserve(paths.size());
  for (const std::uint32_t i : order) sorted.push_back(std::move(paths[i]));
  paths = std::move(sorted);
}

void sortByOurs(Paths& paths) {
  sortByFileName(paths, kLocale);
}

void order(benchmark::State& state, Names names, Arrival arrival, void (*sort)(Paths&)) {
  const Paths& made = pathsOf(names, arrival);
  for (auto _ : state) {
    state.PauseTiming();
    auto paths = std::make_unique<Paths>(made);
    state.ResumeTiming();
    sort(*paths);
    benchmark::DoNotOptimize(paths->front().data());
    state.PauseTiming();
    paths.reset();
    state.ResumeTiming();
  }
}

void add(const char* name, Names names, Arrival arrival, void (*sort)(Paths&)) {
  benchmark::RegisterBenchmark(name, [=](benchmark::State& state) { order(state, names, arrival, sort); })
      ->MeasureProcessCPUTime()
      ->Unit(benchmark::kMillisecond);
}

void addAll() {
  add("sort-ascii/ours", Names::Ascii, Arrival::AsWalked, &sortByOurs);
  add("sort-ascii/icu", Names::Ascii, Arrival::AsWalked, &sortByIcuKeys);
  add("sort-mixed/ours", Names::Mixed, Arrival::AsWalked, &sortByOurs);
  add("sort-mixed/icu", Names::Mixed, Arrival::AsWalked, &sortByIcuKeys);
  add("sort-ascii-shuffled/ours", Names::Ascii, Arrival::Shuffled, &sortByOurs);
  add("sort-ascii-shuffled/icu", Names::Ascii, Arrival::Shuffled, &sortByIcuKeys);
  add("sort-mixed-shuffled/ours", Names::Mixed, Arrival::Shuffled, &sortByOurs);
  add("sort-mixed-shuffled/icu", Names::Mixed, Arrival::Shuffled, &sortByIcuKeys);
}

}  // namespace
}  // namespace lumivane

int main(int count, char** words) {
  benchmark::Initialize(&count, words);
  lumivane::addAll();
  benchmark::RunSpecifiedBenchmarks();
}

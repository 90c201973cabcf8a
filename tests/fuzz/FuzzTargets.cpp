#include "tests/fuzz/FuzzTargets.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace lumivane {
namespace {

constexpr std::array kTargets = {
    FuzzTarget{"ImageList", fuzzImageList},       FuzzTarget{"LastRun", fuzzLastRun},
    FuzzTarget{"Settings", fuzzSettings},         FuzzTarget{"Bookmark", fuzzBookmark},
    FuzzTarget{"Request", fuzzRequest},           FuzzTarget{"Help", fuzzHelp},
    FuzzTarget{"SkipPatterns", fuzzSkipPatterns}, FuzzTarget{"Edid", fuzzEdid},
    FuzzTarget{"PhotoLibrary", fuzzPhotoLibrary}, FuzzTarget{"DecoderAnswer", fuzzDecoderAnswer},
};

}  // namespace

std::span<const FuzzTarget> fuzzTargets() {
  return kTargets;
}

void promise(bool kept, std::source_location where) {
  if (kept) return;
  std::fprintf(stderr, "%s:%u: a promise is broken\n", where.file_name(), where.line());
  std::abort();
}

}  // namespace lumivane

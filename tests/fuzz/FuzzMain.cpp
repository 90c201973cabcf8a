// For libFuzzer: throws bytes at the target that LUMIVANE_FUZZ_TARGET names.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/FuzzTargets.h"

namespace {

const lumivane::FuzzTarget* chosen = nullptr;  // set before the first input

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  const char* name = std::getenv("LUMIVANE_FUZZ_TARGET");
  const auto targets = lumivane::fuzzTargets();
  const auto found = std::ranges::find(targets, name != nullptr ? name : "", &lumivane::FuzzTarget::name);
  if (found == targets.end()) {
    std::fputs("LUMIVANE_FUZZ_TARGET is to name one of:", stderr);
    for (const auto& target : targets) std::fprintf(stderr, " %s", target.name.data());
    std::fputs("\n", stderr);
    std::exit(2);
  }
  chosen = &*found;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  chosen->run({reinterpret_cast<const char*>(data), size});
  return 0;
}

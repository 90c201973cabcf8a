#include "platform/linux/DecoderProgram.h"

#include <unistd.h>

#include <algorithm>

namespace lumivane {

std::uint64_t decoderMemoryBytes(std::uint64_t machineBytes) {
  constexpr std::uint64_t kLeast = std::uint64_t{2} << 30;
  return std::max(machineBytes / 4, kLeast);
}

ProgramToSpawn decoderProgram(const std::string& programFolder, const Environment& environment) {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageBytes = ::sysconf(_SC_PAGESIZE);
  const std::uint64_t machine =
      pages > 0 && pageBytes > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageBytes)
                                 : 0;
  ProgramToSpawn program{programFolder + "/../libexec/lumivane/lumivane-decoder",
                         {"--memory", std::to_string(decoderMemoryBytes(machine))},
                         {}};
  for (const char* const name : {"LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"}) {
    const std::string value = valueOf(environment, name);
    if (!value.empty()) program.environment.push_back(std::string(name) + "=" + value);
  }
  return program;
}

}  // namespace lumivane

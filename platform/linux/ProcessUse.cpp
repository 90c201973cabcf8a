#include "platform/linux/ProcessUse.h"

#include <sys/resource.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/linux/ControlGroupMemory.h"

namespace lumivane {
namespace {

constexpr int kFieldsBetweenNameAndStart = 19;  // from the state, field 3, to the start, field 22
constexpr std::size_t kBytesPerKibibyte = 1024;
constexpr std::int64_t kMostKibibytes = std::int64_t{1} << 50;

}  // namespace

MediaTime startToldBy(std::string_view stat, long ticksPerSecond) {
  // The program's name stands in brackets and may hold brackets and blanks itself.
  const std::size_t name = stat.rfind(')');
  if (name == std::string_view::npos || ticksPerSecond <= 0) return {};
  std::string_view rest = stat.substr(name + 1);
  for (int field = 0; field < kFieldsBetweenNameAndStart + 1; ++field) {
    const std::size_t blank = rest.find(' ');
    if (blank == std::string_view::npos) return {};
    rest.remove_prefix(blank + 1);
  }
  std::int64_t ticks = 0;
  if (std::from_chars(rest.data(), rest.data() + rest.size(), ticks).ec != std::errc()) return {};
  return MediaTime(
      wholeNanoseconds(Seconds(static_cast<double>(ticks) / static_cast<double>(ticksPerSecond))));
}

MediaTime processStart() {
  const auto stat = readKernelFile("/proc/self/stat");
  return stat ? startToldBy(*stat, ::sysconf(_SC_CLK_TCK)) : MediaTime{};
}

std::size_t peakMemoryBytes() {
  rusage use{};
  if (::getrusage(RUSAGE_SELF, &use) != 0) return 0;
  return static_cast<std::size_t>(use.ru_maxrss) * kBytesPerKibibyte;
}

std::size_t peakMemoryToldBy(std::string_view status) {
  const std::optional<std::int64_t> kibibytes = numberAfter("VmHWM:", status);
  if (!kibibytes || *kibibytes < 0 || *kibibytes > kMostKibibytes) return 0;
  return static_cast<std::size_t>(*kibibytes) * kBytesPerKibibyte;
}

// Not from what wait4() tells of a child: that counts what its parent had when it started it.
std::size_t peakMemoryBytesOf(pid_t process) {
  const auto status = readKernelFile("/proc/" + std::to_string(process) + "/status");
  return status ? peakMemoryToldBy(*status) : 0;
}

}  // namespace lumivane

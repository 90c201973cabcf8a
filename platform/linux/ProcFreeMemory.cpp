#include "platform/linux/ProcFreeMemory.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/linux/ControlGroupMemory.h"

namespace lumivane {
namespace {

constexpr std::int64_t kBytesPerKibibyte = 1024;
constexpr std::int64_t kBytesPerMebibyte = 1024 * 1024;
constexpr std::int64_t kMostKibibytes = INT64_MAX / kBytesPerKibibyte;

}  // namespace

ProcFreeMemory::ProcFreeMemory(std::string procFolder, std::string controlGroupFolder)
    : procFolder_(std::move(procFolder)), controlGroupFolder_(std::move(controlGroupFolder)) {}

Result<std::int64_t> ProcFreeMemory::freeAndReclaimableMB() const {
  const std::optional<std::string> memory = readKernelFile(procFolder_ + "/meminfo");
  if (!memory) return Error{std::to_string(errno)};
  const std::optional<std::int64_t> available = numberAfter("MemAvailable:", *memory);
  if (!available) return Error{std::to_string(ENODATA)};
  std::int64_t bytes = std::clamp<std::int64_t>(*available, 0, kMostKibibytes) * kBytesPerKibibyte;
  if (const auto membership = readKernelFile(procFolder_ + "/self/cgroup")) {
    if (const auto left = controlGroupMemoryLeft(*membership, controlGroupFolder_))
      bytes = std::min(bytes, *left);
  }
  return bytes / kBytesPerMebibyte;
}

}  // namespace lumivane

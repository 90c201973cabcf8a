#include "platform/linux/ControlGroupMemory.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <vector>

#include "platform/linux/FileDescriptor.h"

namespace lumivane {
namespace {

constexpr std::size_t kMaxKernelFileBytes = 1024 * 1024;

// What the two versions of control groups call their files.
struct FileNames {
  std::vector<std::string> limits;
  std::string use;
  std::string reclaimable;  // in memory.stat
};

const FileNames& unifiedNames() {
  // Above memory.high a group is slowed down rather than ended: nowhere to keep pictures either.
  static const FileNames names{{"memory.max", "memory.high"}, "memory.current", "inactive_file"};
  return names;
}

const FileNames& legacyNames() {
  static const FileNames names{{"memory.limit_in_bytes"}, "memory.usage_in_bytes", "total_inactive_file"};
  return names;
}

std::optional<std::int64_t> numberIn(const std::string& path) {
  const std::optional<std::string> text = readKernelFile(path);
  return text ? numberAfter("", *text) : std::nullopt;
}

// What one group leaves; absent when it has no limit ("max") or is not there.
std::optional<std::int64_t> leftBy(const std::string& group, const FileNames& names) {
  std::optional<std::int64_t> limit;
  for (const std::string& name : names.limits) {
    const auto found = numberIn(group + '/' + name);
    if (found && (!limit || *found < *limit)) limit = found;
  }
  const auto use = numberIn(group + '/' + names.use);
  if (!limit || *limit < 0 || !use) return std::nullopt;
  const auto statistics = readKernelFile(group + "/memory.stat");
  const auto reclaimable = statistics ? numberAfter(names.reclaimable, *statistics) : std::nullopt;
  // A use of at most the limit, and reclaimable pages of at most the use: no sum can overflow.
  const std::int64_t inUse = std::clamp<std::int64_t>(*use, 0, *limit);
  return *limit - inUse + std::clamp<std::int64_t>(reclaimable.value_or(0), 0, inUse);
}

void keepTheLess(std::optional<std::int64_t>& kept, std::optional<std::int64_t> other) {
  if (other && (!kept || *other < *kept)) kept = other;
}

// From the group itself up to the mounted root. Levels that are not there are passed over: in a container the path
// is the one that the machine outside sees.
std::optional<std::int64_t> tightestOnTheWayUp(const std::string& root, std::string path,
                                               const FileNames& names) {
  // Above the root of its own name space the kernel writes "/..": those groups cannot be seen from here.
  if (path.find("/..") != std::string::npos || path == "/") path.clear();
  std::optional<std::int64_t> left = leftBy(root, names);
  while (!path.empty()) {
    keepTheLess(left, leftBy(root + path, names));
    path.resize(std::min(path.size(), path.rfind('/')));
  }
  return left;
}

// Whether a list such as "cpu,memory" names the memory controller.
bool namesMemory(std::string_view controllers) {
  while (!controllers.empty()) {
    const std::size_t comma = controllers.find(',');
    if (controllers.substr(0, comma) == "memory") return true;
    controllers.remove_prefix(comma == std::string_view::npos ? controllers.size() : comma + 1);
  }
  return false;
}

// One line, "<number>:<controllers>:<path>"; no controllers is version 2.
std::optional<std::int64_t> leftByMembership(std::string_view line, const std::string& root) {
  const std::size_t first = line.find(':');
  const std::size_t second = first == std::string_view::npos ? first : line.find(':', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  const std::string_view controllers = line.substr(first + 1, second - first - 1);
  const std::string path(line.substr(second + 1));
  if (!path.starts_with('/')) return std::nullopt;
  if (controllers.empty()) return tightestOnTheWayUp(root, path, unifiedNames());
  if (namesMemory(controllers)) return tightestOnTheWayUp(root + "/memory", path, legacyNames());
  return std::nullopt;
}

}  // namespace

std::optional<std::string> readKernelFile(const std::string& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.isOpen()) return std::nullopt;
  std::string content;
  std::array<char, 8192> chunk{};
  while (content.size() < kMaxKernelFileBytes) {
    const ssize_t got = ::read(file.get(), chunk.data(), chunk.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) return content;
    content.append(chunk.data(), static_cast<std::size_t>(got));
  }
  errno = EFBIG;
  return std::nullopt;
}

std::optional<std::int64_t> numberAfter(std::string_view name, std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (!line.starts_with(name)) continue;
    line.remove_prefix(name.size());
    const std::size_t digits = line.find_first_not_of(name.empty() ? "" : " \t");
    if (digits == std::string_view::npos || (digits == 0 && !name.empty())) continue;
    std::int64_t number = 0;
    const auto [rest, error] = std::from_chars(line.data() + digits, line.data() + line.size(), number);
    if (error == std::errc{}) return number;
  }
  return std::nullopt;
}

std::optional<std::int64_t> controlGroupMemoryLeft(std::string_view membership, const std::string& root) {
  std::optional<std::int64_t> left;
  while (!membership.empty()) {
    const std::size_t end = membership.find('\n');
    keepTheLess(left, leftByMembership(membership.substr(0, end), root));
    membership.remove_prefix(end == std::string_view::npos ? membership.size() : end + 1);
  }
  return left;
}

}  // namespace lumivane

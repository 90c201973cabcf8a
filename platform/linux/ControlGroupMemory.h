// How much memory the control groups of this process leave it.
//
// Threads: any.
// Units:   bytes.
// Errors:  none; what cannot be read counts as without limit.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumivane {

// What the tightest group on the way up from the process's own leaves: its limit less its use, plus the file pages
// that it could give back. Absent: no group has a limit. `membership` is the text of /proc/self/cgroup, `root` the
// folder where the groups are mounted; both versions of control groups are understood.
[[nodiscard]] std::optional<std::int64_t> controlGroupMemoryLeft(std::string_view membership,
                                                                 const std::string& root);

// The whole content of one of the kernel's small files; absent when it cannot be read, with errno set.
[[nodiscard]] std::optional<std::string> readKernelFile(const std::string& path);

// The number after `name` at the start of a line, as in "inactive_file 4096" or "MemAvailable:  1024 kB".
[[nodiscard]] std::optional<std::int64_t> numberAfter(std::string_view name, std::string_view text);

}  // namespace lumivane

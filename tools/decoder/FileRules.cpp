// The half of Sandbox.h that Landlock does.
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstddef>

#include "platform/linux/FileDescriptor.h"
#include "tools/decoder/Sandbox.h"

namespace lumivane {
namespace {

// The kernel's own structure with the fields that it has grown since its first version, which the system's headers
// need not know yet.
struct Ruleset {
  std::uint64_t handledFiles = 0;
  std::uint64_t handledNetwork = 0;  // from version 4
  std::uint64_t scoped = 0;          // from version 6
};

constexpr std::uint64_t kFilesFirst = (1ULL << 13) - 1;
constexpr std::uint64_t kFilesRefer = 1ULL << 13;     // from version 2
constexpr std::uint64_t kFilesTruncate = 1ULL << 14;  // from version 3
constexpr std::uint64_t kFilesDevice = 1ULL << 15;    // from version 5
constexpr std::uint64_t kNetworkAll = 3;              // binding and connecting
constexpr std::uint64_t kScopesAll = 3;               // sockets without a file, and signals
constexpr std::uint64_t kReading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;

Ruleset everythingOf(long version) {
  Ruleset rules;
  rules.handledFiles = kFilesFirst;
  if (version >= 2) rules.handledFiles |= kFilesRefer;
  if (version >= 3) rules.handledFiles |= kFilesTruncate;
  if (version >= 5) rules.handledFiles |= kFilesDevice;
  if (version >= 4) rules.handledNetwork = kNetworkAll;
  if (version >= 6) rules.scoped = kScopesAll;
  return rules;
}

std::size_t sizeOf(long version) {
  if (version >= 6) return sizeof(Ruleset);
  return version >= 4 ? offsetof(Ruleset, scoped) : offsetof(Ruleset, handledNetwork);
}

bool allowReading(int ruleset) {
  const FileDescriptor root(::open("/", O_PATH | O_CLOEXEC));
  if (!root.isOpen()) return false;
  landlock_path_beneath_attr everywhere{};
  everywhere.allowed_access = kReading;
  everywhere.parent_fd = root.get();
  return ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &everywhere, 0U) == 0;
}

}  // namespace

bool makeFilesReadOnly() {
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return false;
  const long version =
      ::syscall(SYS_landlock_create_ruleset, nullptr, std::size_t{0}, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 1) return false;
  const Ruleset rules = everythingOf(version);
  const FileDescriptor ruleset(
      static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rules, sizeOf(version), 0U)));
  return ruleset.isOpen() && allowReading(ruleset.get()) &&
         ::syscall(SYS_landlock_restrict_self, ruleset.get(), 0U) == 0;
}

}  // namespace lumivane

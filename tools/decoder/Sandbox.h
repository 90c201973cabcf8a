// The doors that a process closes behind itself before it reads what it must not trust: no writing, no network, no
// process of its own, no more memory than it is allowed.
//
// In this order: makeFilesReadOnly() while the process has one thread (the rule holds for the thread that makes it and
// those that it starts), then everything is loaded, then limitResources() and filterSystemCalls().
//
// Threads: main only.
// Units:   bytes.
// Errors:  false where the system does not have it; nothing can be opened again.
#pragma once

#include <cstdint>

namespace lumivane {

// Files may be read and nothing else, by the rules of Landlock.
[[nodiscard]] bool makeFilesReadOnly();

// Memory of its own, and of others on top of it; no byte written to any file, no core dump. 0 bytes: no limit of memory.
void limitResources(std::uint64_t memoryBytes, std::uint64_t sharedBytes);

// From now on only system calls that reading files and computing take, in all threads; whatever else fails with EPERM.
// No code can be loaded any more.
[[nodiscard]] bool filterSystemCalls();

}  // namespace lumivane

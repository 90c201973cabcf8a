// Which program opens picture files for us, and what it is started with.
//
// Threads: any.
// Units:   bytes.
// Errors:  none; whether the program is there shows when it is started.
#pragma once

#include <cstdint>
#include <string>

#include "platform/linux/Environment.h"
#include "platform/linux/SpawnedProgram.h"

namespace lumivane {

// How much memory the process may take for itself: a quarter of the machine's, at least 2 GiB.
[[nodiscard]] std::uint64_t decoderMemoryBytes(std::uint64_t machineBytes);

// The program that belongs to the one in `programFolder`, built or installed. Of our environment it gets what the loader
// and the checks of a test build need, and nothing else.
[[nodiscard]] ProgramToSpawn decoderProgram(const std::string& programFolder, const Environment& environment);

}  // namespace lumivane

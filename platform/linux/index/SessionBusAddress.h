// Where the user's session bus listens.
//
// Threads: any.
// Errors:  empty where there is none. None is ever started: one that a library starts by itself outlives the program.
#pragma once

#include <string>

#include "platform/Files.h"
#include "platform/linux/Environment.h"

namespace lumivane {

[[nodiscard]] std::string sessionBusAddress(const Environment& environment, const Files& files);

}  // namespace lumivane

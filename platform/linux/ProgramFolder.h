// The folder that the running program lies in, links followed: its own data is found from there, built or installed.
//
// Threads: any.
// Errors:  empty where the system does not tell.
#pragma once

#include <string>

namespace lumivane {

[[nodiscard]] std::string programFolder();

}  // namespace lumivane

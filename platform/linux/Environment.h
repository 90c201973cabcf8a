// The environment variables that the program was started with, as a value that is handed down.
//
// Threads: a value.
// Errors:  none; a variable that is not set reads as empty.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace lumivane {

using Environment = std::map<std::string, std::string, std::less<>>;

// From the "NAME=value" entries of main's third argument or of `environ`, which end with a null pointer. Entries
// without "=" are left out; of two entries with the same name the first counts.
[[nodiscard]] Environment environmentFrom(const char* const* entries);

// The value of a variable, empty when it is not set.
[[nodiscard]] std::string valueOf(const Environment& environment, std::string_view name);

}  // namespace lumivane

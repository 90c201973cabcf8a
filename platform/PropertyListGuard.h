// Looks at the bytes of a property list before they reach the parsing library, which takes apart and frees nested
// lists by recursion and copies an object once for every reference to it: nesting too deep would overflow its
// stack, and a few kilobytes of references to references would fill the memory.
//
// Threads: any; a pure function.
// Units:   bytes.
// Errors:  an Error saying what is wrong; success does not promise that the library accepts the bytes.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Result.h"

namespace lumivane {

inline constexpr std::size_t kDeepestPropertyListNesting = 64;
inline constexpr std::size_t kLargestPropertyListBytes = std::size_t{16} << 20;

[[nodiscard]] bool isBinaryPropertyList(std::string_view bytes);

// Elements known, numbers and dates well-formed, nesting within the limit.
[[nodiscard]] Result<Done> guardXmlPropertyList(std::string_view bytes);

// No cycles, nesting within the limit, no zeros in texts, and not more than 64 MiB after every reference is followed.
[[nodiscard]] Result<Done> guardBinaryPropertyList(std::string_view bytes);

}  // namespace lumivane

// The key commands as the help overlay lists them.
//
// Threads: any; a pure function.
// Errors:  none.
#pragma once

#include <string_view>

namespace lumivane {

// The delete key is listed only when it may delete.
[[nodiscard]] std::string_view helpText(bool enableDeleteAtRuntime);

}  // namespace lumivane

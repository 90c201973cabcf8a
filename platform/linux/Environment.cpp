#include "platform/linux/Environment.h"

namespace lumivane {

Environment environmentFrom(const char* const* entries) {
  Environment environment;
  for (; entries != nullptr && *entries != nullptr; ++entries) {
    const std::string_view entry = *entries;
    const std::size_t equals = entry.find('=');
    if (equals == std::string_view::npos || equals == 0) continue;
    environment.emplace(entry.substr(0, equals), entry.substr(equals + 1));
  }
  return environment;
}

std::string valueOf(const Environment& environment, std::string_view name) {
  const auto found = environment.find(name);
  return found == environment.end() ? std::string() : found->second;
}

}  // namespace lumivane

// A file's address as other programs are given it.
//
// Threads: any; a pure function.
// Errors:  absent for a path that is not absolute or holds a zero byte.
#pragma once

#include <optional>
#include <string>

namespace lumivane {

// "file:///..." with every byte percent-encoded that is not plain ASCII or means something in an address. The bytes
// are taken as they are, whatever their encoding: QUrl::fromLocalFile() would lose those that are not UTF-8.
[[nodiscard]] std::optional<std::string> fileUri(const std::string& path);

}  // namespace lumivane

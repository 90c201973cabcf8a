// A file's address as programs hand it to each other.
//
// Threads: any; pure functions.
// Errors:  absent for a path that is not absolute or holds a zero byte, and for what is no address of a local file.
#pragma once

#include <optional>
#include <string>

namespace lumivane {

// "file:///..." with every byte percent-encoded that is not plain ASCII or means something in an address. The bytes
// are taken as they are, whatever their encoding: QUrl::fromLocalFile() would lose those that are not UTF-8.
[[nodiscard]] std::optional<std::string> fileUri(const std::string& path);

// The path that such an address leads to, any bytes. An address on another host leads nowhere.
[[nodiscard]] std::optional<std::string> pathOfFileUri(const std::string& uri);

}  // namespace lumivane

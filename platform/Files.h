// Small files of the program's own (settings, lists, records): read whole, written whole.
//
// Threads: any; the object holds no state.
// Errors:  every failure is an Error whose message names the path (made printable) and the system's reason.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "platform/Result.h"

namespace lumivane {

class Files {
 public:
  virtual ~Files() = default;

  // Whether anything stands at the path (links are followed). What a fault hides counts as there: no loss by doubt.
  [[nodiscard]] virtual bool exists(const std::string& path) const = 0;

  // The whole content of a regular file. Anything else (folder, FIFO, device) is an error and is never
  // opened in a way that could block; a file of more than maxBytes is an error.
  [[nodiscard]] virtual Result<std::string> read(const std::string& path, std::size_t maxBytes) const = 0;

  // Replaces the file in one step: after a failure or a crash the old content or the new one is there, whole.
  // Missing parent folders are made with mode 0700.
  [[nodiscard]] virtual Result<Done> writeAtomically(const std::string& path, std::string_view content) = 0;

  // Gives a file another name in the same folder, replacing what has that name.
  [[nodiscard]] virtual Result<Done> rename(const std::string& from, const std::string& to) = 0;

  // When the content was last changed (symbolic links are followed).
  [[nodiscard]] virtual Result<WallTime> modificationTime(const std::string& path) const = 0;

  // Removes the file, or the symbolic link itself.
  [[nodiscard]] virtual Result<Done> remove(const std::string& path) = 0;

  // Tries to open the file for reading and writing, and closes it again: why can a file not be used?
  [[nodiscard]] virtual Result<Done> probeForUpdating(const std::string& path) const = 0;
};

}  // namespace lumivane

// Files on the machine's file systems.
//
// Threads: any; the object holds no state.
// Errors:  as in Files.h; the message is "<path>: <the system's reason>".
#pragma once

#include "platform/Files.h"

namespace lumivane {

class PosixFiles final : public Files {
 public:
  [[nodiscard]] bool exists(const std::string& path) const override;
  [[nodiscard]] Result<std::string> read(const std::string& path, std::size_t maxBytes) const override;

  // A symbolic link stays one: the file that it leads to is replaced. A file that was there keeps its permission
  // bits, a new one gets 0600. What is there but is no regular file, or may not be written, is left alone.
  [[nodiscard]] Result<Done> writeAtomically(const std::string& path, std::string_view content) override;
  [[nodiscard]] Result<Done> rename(const std::string& from, const std::string& to) override;
  [[nodiscard]] Result<WallTime> modificationTime(const std::string& path) const override;
  [[nodiscard]] Result<Done> remove(const std::string& path) override;
  [[nodiscard]] Result<Done> probeForUpdating(const std::string& path) const override;
};

}  // namespace lumivane

// The log as entries of the system's journal.
//
// Threads: write() from any thread.
// Errors:  none; libsystemd drops entries silently while no journal listens.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Log.h"

namespace lumivane {

class JournalLog final : public Log {
 public:
  void write(std::string_view text, LogLevel level) override;
};

// The fields of an entry, each as "NAME=value": MESSAGE, PRIORITY (6 = information, 3 = error), SYSLOG_IDENTIFIER,
// LUMIVANE_SUBSYSTEM, LUMIVANE_CATEGORY, LUMIVANE_LEVEL ("information" or "error").
[[nodiscard]] std::vector<std::string> journalFields(std::string_view text, LogLevel level);

}  // namespace lumivane

// Chooses where the log goes: the journal where one listens, else standard error.
//
// Threads: any.
// Errors:  none.
#pragma once

#include <memory>
#include <string>

#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/linux/Environment.h"

namespace lumivane {

inline constexpr const char* kJournalSocket = "/run/systemd/journal/socket";

// LUMIVANE_LOG=stderr in the environment sends the log to standard error in any case. The clock must outlive the log.
// A program that logs to standard error should ignore SIGPIPE, or it ends with whoever reads its log.
[[nodiscard]] std::unique_ptr<Log> makeSystemLog(const Environment& environment, const Clock& clock,
                                                 const std::string& journalSocket = kJournalSocket);

}  // namespace lumivane

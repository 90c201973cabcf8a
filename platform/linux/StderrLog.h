// The log as lines of text on a file descriptor: standard error where there is no journal.
//
// Threads: write() from any thread; each entry is one write(2), so that entries never mix.
// Owns:    nothing; the descriptor stays open elsewhere.
// Format:  "<time> information <text>" or "<time> error <text>"; the time is UTC, "2026-11-21T09:30:00.123Z".
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "platform/Log.h"

namespace lumivane {

class StderrLog final : public Log {
 public:
  // The clock must outlive the log.
  StderrLog(const Clock& clock, int descriptor);
  void write(std::string_view text, LogLevel level) override;

 private:
  const Clock& clock_;
  const int descriptor_;
  std::mutex mutex_;  // around the write that a full pipe may cut in two
};

// The word that stands for a level in every log.
[[nodiscard]] std::string_view levelName(LogLevel level);

// The text as a log takes it: itself when it is valid UTF-8, else with "?" for every byte above 127.
[[nodiscard]] std::string loggableText(std::string_view text);

// One entry with its line end. The text stays as it is; its further lines are indented, so that no text can pass for
// an entry of its own, and control characters other than the line end are made visible.
[[nodiscard]] std::string logLine(WallTime time, LogLevel level, std::string_view text);

}  // namespace lumivane

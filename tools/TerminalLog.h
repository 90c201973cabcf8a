// The log of a program for the terminal: errors go to standard error, information nowhere.
//
// Threads: write() from any thread.
// Errors:  none.
#pragma once

#include <atomic>
#include <cstddef>
#include <mutex>
#include <ostream>
#include <string_view>

#include "platform/Log.h"

namespace lumivane {

class TerminalLog final : public Log {
 public:
  // On a terminal, a progress line may stand where the entry is written.
  TerminalLog(std::ostream& out, bool onTerminal) : out_(out), onTerminal_(onTerminal) {}

  // One line, control characters made visible.
  void write(std::string_view text, LogLevel level) override;

  // How many errors were written so far.
  [[nodiscard]] std::size_t errors() const { return errors_; }

 private:
  std::ostream& out_;
  const bool onTerminal_;
  std::mutex mutex_;
  std::atomic<std::size_t> errors_{0};
};

}  // namespace lumivane

// The log that support reads: one subsystem, one category, two levels.
//
// Threads: write() from any thread.
// Errors:  none; an entry that cannot be written is lost.
#pragma once

#include <string_view>

namespace lumivane {

inline constexpr std::string_view kLogSubsystem = "de.orvik.LumivaneApp";
inline constexpr std::string_view kLogCategory = "LumivaneApp";

enum class LogLevel { Information, Error };

class Log {
 public:
  virtual ~Log() = default;
  // Writes one entry. Text that is not valid UTF-8 is written as ASCII, each offending byte as "?".
  virtual void write(std::string_view text, LogLevel level) = 0;

  void information(std::string_view text) { write(text, LogLevel::Information); }
  void error(std::string_view text) { write(text, LogLevel::Error); }
};

}  // namespace lumivane

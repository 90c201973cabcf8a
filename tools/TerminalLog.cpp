#include "tools/TerminalLog.h"

#include "platform/PrintableText.h"

namespace lumivane {

void TerminalLog::write(std::string_view text, LogLevel level) {
  if (level != LogLevel::Error) return;
  ++errors_;
  while (text.ends_with('\n')) text.remove_suffix(1);
  const std::lock_guard lock(mutex_);
  out_ << (onTerminal_ ? "\r\x1B[K" : "") << "lumivane: " << printable(text) << '\n' << std::flush;
}

}  // namespace lumivane

// Our own source lines would only hide where an entry comes from.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include "platform/linux/JournalLog.h"

#include <sys/uio.h>
#include <systemd/sd-journal.h>

#include "platform/linux/StderrLog.h"

namespace lumivane {
namespace {

std::string field(std::string_view name, std::string_view value) {
  std::string text(name);
  text.append("=").append(value);
  return text;
}

}  // namespace

std::vector<std::string> journalFields(std::string_view text, LogLevel level) {
  return {
      field("MESSAGE", loggableText(text)),     field("PRIORITY", level == LogLevel::Error ? "3" : "6"),
      field("SYSLOG_IDENTIFIER", "lumivane"),   field("LUMIVANE_SUBSYSTEM", kLogSubsystem),
      field("LUMIVANE_CATEGORY", kLogCategory), field("LUMIVANE_LEVEL", levelName(level)),
  };
}

void JournalLog::write(std::string_view text, LogLevel level) {
  std::vector<std::string> fields = journalFields(text, level);
  std::vector<iovec> parts;
  parts.reserve(fields.size());
  for (std::string& entry : fields) parts.push_back({entry.data(), entry.size()});
  ::sd_journal_sendv(parts.data(), static_cast<int>(parts.size()));
}

}  // namespace lumivane

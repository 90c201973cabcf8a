#include "platform/linux/SystemLog.h"

#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/JournalLog.h"
#include "platform/linux/StderrLog.h"

namespace lumivane {
namespace {

// libsystemd itself does not tell: without a journal its calls succeed and the entries are gone.
bool isSocket(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

}  // namespace

std::unique_ptr<Log> makeSystemLog(const Environment& environment, const Clock& clock,
                                   const std::string& journalSocket) {
  if (valueOf(environment, "LUMIVANE_LOG") != "stderr" && isSocket(journalSocket)) {
    return std::make_unique<JournalLog>();
  }
  return std::make_unique<StderrLog>(clock, STDERR_FILENO);
}

}  // namespace lumivane

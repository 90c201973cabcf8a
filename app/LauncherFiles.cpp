#include "app/LauncherFiles.h"

#include "platform/DateText.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr const char* kContainerName = "K7Q4MZ2R9T.de.orvik.LumivaneGroup";
constexpr const char* kRequestName = "LumivaneApp-Auto-Launcher.flags";
constexpr const char* kAliveName = "LumivaneApp.flags";
constexpr std::size_t kLongestRequestBytes = 4096;
constexpr std::chrono::seconds kRequestLifetime{10};

}  // namespace

void addOrLog(LaunchFlags& flags, const std::string& word, Log& log) {
  if (!flags.add(word)) log.error("Unknown flag (" + printable(word) + ")!");
}

LauncherFiles::LauncherFiles(Files& files, Log& log, const std::string& stateFolder)
    : files_(files), log_(log), container_(stateFolder.empty() ? "" : stateFolder + "/" + kContainerName) {}

void LauncherFiles::takeRequest(LaunchFlags& flags, WallTime now) const {
  if (container_.empty()) {
    log_.error("Failed to create app group container URL: (null)!");
    return;
  }
  const std::string request = container_ + "/" + kRequestName;
  if (!files_.exists(request)) return;
  if (const Result<std::string> content = files_.read(request, kLongestRequestBytes); !content) {
    log_.error("Reading flags file " + printable(request) + " failed! error = " + content.error());
  } else if (!isValidUtf8(content.value())) {
    log_.error("Reading flags file " + printable(request) + " failed! error = the content is not UTF-8");
  } else if (isFresh(request, now)) {
    addOrLog(flags, content.value(), log_);
  }
  log_.information("Removing flags file " + printable(request));
  if (const Result<Done> removed = files_.remove(request); !removed)
    log_.error("Failed with error = " + removed.error() + "!");
}

// A request that nobody took in time was meant for a start that did not happen.
bool LauncherFiles::isFresh(const std::string& request, WallTime now) const {
  const Result<WallTime> written = files_.modificationTime(request);
  if (!written) {
    log_.error("Retrieving modification date of " + printable(request) +
               " failed! error = " + written.error());
    return false;
  }
  return now - written.value() < kRequestLifetime;
}

void LauncherFiles::writeAliveFile(WallTime launched) {
  if (!container_.empty()) lumivane_alive_file_ = container_ + "/" + kAliveName;
  const Result<Done> written = lumivane_alive_file_.empty()
                                   ? Result<Done>(Error{"there is no group container"})
                                   : files_.writeAtomically(lumivane_alive_file_, dateText(launched));
  if (written) return;
  const std::string where = lumivane_alive_file_.empty() ? "(null)" : printable(lumivane_alive_file_);
  log_.error("Failed to write LumivaneApp.flags (" + where +
             ") in group container! error = " + written.error());
}

void LauncherFiles::removeAliveFile() {
  // Nobody can be told any more of a file that stays.
  if (!lumivane_alive_file_.empty()) static_cast<void>(files_.remove(lumivane_alive_file_));
}

}  // namespace lumivane

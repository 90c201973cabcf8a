// The program's own files, in whatever state they may be found.
#include <algorithm>

#include "app/LauncherFiles.h"
#include "collection/FolderBookmarks.h"
#include "collection/ImageListFile.h"
#include "engine/LastRunRecord.h"
#include "platform/PrintableText.h"
#include "settings/SettingsStore.h"
#include "tests/fuzz/FuzzTargets.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {

// A list that was read is read again as it was written.
void fuzzImageList(std::string_view bytes) {
  MemoryFiles files;
  RecordingLog log;
  files.content["/list"] = std::string(bytes);
  const ImageList list = loadImageList(files, "/list", log);
  promise(files.content["/list"] == bytes);
  for (const std::string_view path : list)
    promise(isValidUtf8(path) && path.find('\n') == std::string_view::npos);
  promise(list.empty() || !list.front().empty());
  if (list.empty()) return;
  saveImageList(files, "/copy", list, log);
  promise(loadImageList(files, "/copy", log) == list);
}

// A record that cannot be read is left alone; one that can be is written and read again.
void fuzzLastRun(std::string_view bytes) {
  MemoryFiles files;
  RecordingLog log;
  files.content["/run"] = std::string(bytes);
  LastRunRecord record(files, log);
  const auto run = record.loadLastRunInfo("/run", {});
  record.saveLastRunInfo({7, WallTime(std::chrono::seconds(1'700'000'000))});
  if (!run) return promise(files.content["/run"] == bytes);
  LastRunRecord again(files, log);
  const auto written = again.loadLastRunInfo("/run", {});
  promise(written && written->imageIndex == 7);
  (void)resumePosition(run->imageIndex, 3);
  promise(resumePosition(run->imageIndex, 0) == 0);
}

// Whatever was read fits the fields, so it is read again as it was written. What was damaged is kept under another name.
void fuzzSettings(std::string_view bytes) {
  MemoryFiles files;
  RecordingLog log;
  const std::string path = "/config/de.orvik.LumivaneApp.display.plist";
  files.content[path] = std::string(bytes);
  SettingsStore store(files, log, "/config");
  const auto domain = store.defaultsForModuleWithName(settingsDomainName("display"));
  promise(domain != nullptr && domain->path() == path);
  const DisplaySettings read = loadSettings(domain.get());
  saveSettings(*domain, read);
  promise(domain->synchronize());
  const auto again = store.defaultsForModuleWithName(settingsDomainName("display"));
  promise(loadSettings(again.get()) == read);
}

void fuzzBookmark(std::string_view bytes) {
  const Result<BookmarkRecord> record = parseBookmark(bytes);
  const std::vector<FolderBookmark> bookmarks = {FolderBookmark(bytes)};
  const ResolvedBookmarks folders = recordedFolders(bookmarks);
  promise(folders.opened.size() <= 1);
  if (!record) return;
  const Result<BookmarkRecord> again = parseBookmark(writeBookmark(record.value()));
  promise(again && again.value() == record.value());
}

// A request is read once, and is gone.
void fuzzRequest(std::string_view bytes) {
  MemoryFiles files;
  RecordingLog log;
  const std::string path = "/state/K7Q4MZ2R9T.de.orvik.LumivaneGroup/LumivaneApp-Auto-Launcher.flags";
  const WallTime now(std::chrono::seconds(1'700'000'000));
  files.content[path] = std::string(bytes);
  files.modified[path] = now;
  LaunchFlags flags;
  LauncherFiles(files, log, "/state").takeRequest(flags, now);
  promise(!files.exists(path));
  const bool known = bytes == "-f" || bytes == "-s";
  promise(known == (flags.fullScreen || flags.surrogate));
}

}  // namespace lumivane

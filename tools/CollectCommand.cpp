// lumivane collect
#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <stop_token>
#include <system_error>

#include "collection/FinishedScan.h"
#include "collection/FollowedFolders.h"
#include "collection/ImageListFile.h"
#include "collection/albums/AlbumCollection.h"
#include "engine/LastRunRecord.h"
#include "platform/PrintableText.h"
#include "settings/DisplayFileName.h"
#include "settings/PreferencesStore.h"
#include "tools/CollationLocale.h"
#include "tools/FolderPictures.h"
#include "tools/PhotoLibraryArgument.h"
#include "tools/Tool.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kHelp =
    "Usage: lumivane collect [--display NAME] [--method METHOD] [--explain] [--follow-links]\n"
    "                        FOLDER\n"
    "       lumivane collect [--display NAME] --album ALBUM [LIBRARY]\n"
    "\n"
    "Finds the pictures in FOLDER and below it and keeps them for a display, in place of\n"
    "those that were collected before. Files that are too small or match one of the\n"
    "display's skip patterns are left out. Of a photo library, the pictures of one album are\n"
    "kept, in the album's order (see lumivane albums).\n"
    "\n"
    "  --display NAME  the display (see lumivane displays); else the one that the\n"
    "                  slideshow opens on\n"
    "  --method walk   look at every file: its name, and how large it is. The default\n"
    "  --method index  search the desktop's index; where it does not cover the folder, an\n"
    "                  index of our own, which reads the headers of the files. Pictures with\n"
    "                  a side that is too short (the setting ExcludeSize) are left out, too\n"
    "  --explain       list what is left out, with the rule that says so: hidden, link, no\n"
    "                  file, type, file size, pixel size, no picture, unreadable, name, skip\n"
    "                  pattern, not in the index\n"
    "  --follow-links  include folders that symbolic links lead to; with a walk only\n"
    "  --album ALBUM   collect that album of LIBRARY, else of the photo library that\n"
    "                  $LUMIVANE_PHOTOS_LIBRARY names, else of the first one in the\n"
    "                  Pictures folder\n";

constexpr std::string_view kWalk = "walk";
constexpr std::string_view kIndex = "index";

constexpr std::string_view kNowhereToKeepTheList = "there is no folder to keep the list in: HOME is not set";

// While it lives, an interrupt waits: list and settings are stored both or not at all.
class InterruptsHeldBack {
 public:
  InterruptsHeldBack() {
    sigset_t interrupts;
    sigemptyset(&interrupts);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&interrupts, signal);
    pthread_sigmask(SIG_BLOCK, &interrupts, &former_);
  }
  ~InterruptsHeldBack() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
  InterruptsHeldBack(const InterruptsHeldBack&) = delete;
  InterruptsHeldBack& operator=(const InterruptsHeldBack&) = delete;

 private:
  sigset_t former_{};
};

// The folder as an absolute path. Links stay as the user named them, unless ".." makes that ambiguous.
std::string absoluteFolder(const std::string& folder) {
  std::error_code error;
  const fs::path path = fs::absolute(folder, error);
  if (error) return folder;
  if (std::ranges::find(path, fs::path("..")) != path.end()) {
    const fs::path resolved = fs::canonical(path, error);
    if (!error) return resolved.string();
  }
  std::string normal = path.lexically_normal().string();
  while (normal.size() > 1 && normal.ends_with('/')) normal.pop_back();
  return normal;
}

// Empty, or why nothing can be collected from the folder.
std::string problemWith(const std::string& folder) {
  if (!isValidUtf8(folder) || folder.find('\n') != std::string::npos) {
    return "the list of pictures cannot hold the folder's name: " + printable(folder);
  }
  DIR* opened = ::opendir(folder.c_str());
  const int number = errno;
  if (opened != nullptr) ::closedir(opened);
  if (opened != nullptr && ::access(folder.c_str(), X_OK) == 0) return {};
  return printable(folder) + ": " + std::generic_category().message(opened == nullptr ? number : errno);
}

// Keeps when the pictures were collected; the show begins anew with them.
void storeLastScan(const Tool& tool, const std::string& token) {
  LastRunRecord record(tool.files, tool.log);
  const LastRun fresh{0, tool.clock.wallTime()};
  const std::string path = tool.folders.data + "/LumivaneLastRunInfo." + token + ".plist";
  if (record.loadLastRunInfo(path, fresh)) record.saveLastRunInfo(fresh);
}

// In the order of a scan in the preferences: the list, then the settings that say where it is from.
ExitStatus store(const Tool& tool, const std::string& display, const std::vector<std::string>& imagefiles,
                 PreferencesStore& preferences, const DisplaySettings& settings) {
  const InterruptsHeldBack held;
  const std::size_t errorsBefore = tool.log.errors();
  const std::string token = fileNameToken(display);
  saveImageList(tool.files, tool.folders.data + "/" + imageListFileName(token), ImageList(imagefiles),
                tool.log);
  if (tool.log.errors() != errorsBefore || !preferences.save(settings)) {
    return fail(tool, "the pictures of display \"" + printable(display) + "\" could not be stored");
  }
  storeLastScan(tool, token);
  return ExitStatus::Done;
}

FolderPictures walkIn(const Tool& tool, const std::string& folder, const DisplaySettings& settings,
                      const Arguments& arguments) {
  FollowedFolders followed(folder);
  WalkRequest request{folder, settings.excludekB_, settings.skipPatterns_, {}, {}};
  if (arguments.has("--follow-links")) {
    request.askPermission = [&](const std::string& found, const std::stop_token& /*stop*/) {
      return followed.answer(found);
    };
  }
  return walkFolder(tool, std::move(request), arguments.has("--explain"));
}

FolderPictures searchIn(const Tool& tool, const std::string& folder, const DisplaySettings& settings,
                        const Arguments& arguments) {
  return searchFolder(tool, {folder, settings.excludekB_, settings.excludeSize_, settings.skipPatterns_},
                      arguments.has("--explain"));
}

ExitStatus collectFolder(const Tool& tool, const Arguments& arguments) {
  const std::string folder = absoluteFolder(arguments.operands.front());
  if (const std::string problem = problemWith(folder); !problem.empty()) return fail(tool, problem);
  if (tool.folders.data.empty()) return fail(tool, kNowhereToKeepTheList);
  const std::string display = displayNameFor(tool, arguments);

  SettingsStore settingsStore(tool.files, tool.log, tool.folders.config);
  PreferencesStore preferences(settingsStore, tool.log);
  DisplaySettings settings = preferences.load(display);
  const bool byIndex = arguments.valueOf("--method") != nullptr && *arguments.valueOf("--method") == kIndex;
  FolderPictures pictures =
      byIndex ? searchIn(tool, folder, settings, arguments) : walkIn(tool, folder, settings, arguments);
  for (const LeftOutFile& file : pictures.leftOut)
    tool.out << ruleText(file.rule) << '\t' << printable(file.path) << '\n';
  FinishedScan scan =
      finishScan(std::move(pictures.found), byIndex, collationLocale(tool.environment), tool.log);
  if (!scan.directoryBookmarks || scan.directoryBookmarks->empty()) {
    return fail(tool, printable(folder) + " cannot be remembered; nothing was changed");
  }
  settings.directoryBookmarks_ = std::move(*scan.directoryBookmarks);
  settings.useAlbum_ = false;
  const ExitStatus status = store(tool, display, scan.imagefiles, preferences, settings);
  if (status == ExitStatus::Done) tool.out << scan.countText << '\n';
  return status;
}

ExitStatus collectAlbumNamed(const Tool& tool, const Arguments& arguments, const std::string& name) {
  if (tool.folders.data.empty()) return fail(tool, kNowhereToKeepTheList);
  const SqlitePhotoLibrary library = photoLibraryFor(tool, arguments.operands);
  const std::optional<std::vector<Album>> albums = albumsFor(tool, library);
  const Album* album = albums ? findAlbum(*albums, name, tool.log) : nullptr;
  if (album == nullptr) return ExitStatus::Failed;
  const CollectedAlbum collected =
      collectAlbum(name, library.pictures(*album, AlbumDetail::Files, {}), tool.log);
  if (collected.end != AlbumEnd::Collected && collected.end != AlbumEnd::Empty) return ExitStatus::Failed;

  const std::string display = displayNameFor(tool, arguments);
  SettingsStore settingsStore(tool.files, tool.log, tool.folders.config);
  PreferencesStore preferences(settingsStore, tool.log);
  DisplaySettings settings = preferences.load(display);
  settings.useAlbum_ = true;
  settings.selectedAlbum_ = name;
  const ExitStatus status = store(tool, display, collected.imagefiles, preferences, settings);
  if (status != ExitStatus::Done) return status;
  tool.out << collected.imagefiles.size() << "   (# missing files = " << collected.numMissing << ")\n";
  return status;
}

ExitStatus collect(const Tool& tool, const Arguments& arguments) {
  if (const std::string* album = arguments.valueOf("--album")) {
    for (const char* option : {"--follow-links", "--method", "--explain"}) {
      if (arguments.has(option))
        return badUsage(tool, std::string(option) + " is for folders, not for albums");
    }
    return collectAlbumNamed(tool, arguments, *album);
  }
  if (arguments.operands.empty()) return badUsage(tool, "something is missing on the command line");
  if (const std::string* method = arguments.valueOf("--method")) {
    if (*method != kWalk && *method != kIndex) return badUsage(tool, "--method is walk or index");
    if (*method == kIndex && arguments.has("--follow-links"))
      return badUsage(tool, "an index does not follow links");
  }
  return collectFolder(tool, arguments);
}

}  // namespace

ExitStatus collectCommand(const Tool& tool, const std::vector<std::string>& words) {
  const CheckedArguments checked = checkArguments(tool, words,
                                                  {kHelp,
                                                   {{"--display", true},
                                                    {"--method", true},
                                                    {"--explain", false},
                                                    {"--follow-links", false},
                                                    {"--album", true}},
                                                   0,
                                                   1});
  return checked.end ? *checked.end : collect(tool, checked.arguments);
}

}  // namespace lumivane

#include "app/Desktop.h"

#include <QSysInfo>
#include <QVersionNumber>
#include <utility>

#include "app/Version.h"
#include "collection/SkipPatterns.h"
#include "collection/index/DimensionCacheFile.h"
#include "platform/linux/DecoderProgram.h"
#include "platform/linux/ProgramFolder.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/UserLocale.h"
#include "platform/linux/XdgUserFolders.h"
#include "platform/linux/index/IndexedRoots.h"
#include "platform/linux/index/SessionBusAddress.h"

namespace lumivane {
namespace {

SystemVersion systemVersion() {
  const QVersionNumber version = QVersionNumber::fromString(QSysInfo::productVersion());
  return {version.majorVersion(), version.minorVersion(), version.microVersion()};
}

std::optional<PatternFault> firstFault(const std::string& patterns) {
  const std::optional<SkipPatternFault> fault = firstSkipPatternFault(patterns);
  if (!fault) return std::nullopt;
  return PatternFault{fault->line, fault->reason};
}

}  // namespace

Desktop::Desktop(const Environment& environment, const Clock& clock, Log& log, const WindowSource& window,
                 DecodeListener decoded)
    : clock_(clock),
      log_(log),
      mainLoop_(log),
      queues_(log),
      boundedCalls_(log),
      folders_(xdgUserFolders(environment, files_)),
      locale_(userLocale(environment, "LC_COLLATE")),
      settings_(files_, log, folders_.config),
      photoLibrary_(valueOf(environment, "LUMIVANE_PHOTOS_LIBRARY"), folders_.pictures, locale_),
      displayRegistry_(files_, connectorsOf(windowSystemDisplays_.attached())),
      displays_(windowSystemDisplays_, displayRegistry_, log),
      decoderPrograms_(decoderProgram(programFolder(), environment)),
      decoderProcesses_(decoderPrograms_, pixelMemories_, clock, log, DecoderLimits{}, holdUp),
      decoder_(decoderProcesses_),
      geocoder_(OfflineGeocoder::open(placesPath(programFolder(), valueOf(environment, "LUMIVANE_PLACES")),
                                      userLocale(environment, "LC_MESSAGES"), mainLoop_)),
      text_(log),
      dimensions_(decoderProcesses_),
      desktopIndex_(sessionBusAddress(environment, files_), indexedRootsOfUser),
      folderFiles_(log),
      metadataQuery_({{&desktopIndex_, &folderFiles_},
                      dimensions_,
                      files_,
                      dimensionCachePath(folders_.cache),
                      log,
                      {}}),
      sessionBus_(QDBusConnection::SessionBus, queues_, mainLoop_),
      systemBus_(QDBusConnection::SystemBus, queues_, mainLoop_),
      fileBrowser_(
          log, [this](UseBus use) { sessionBus_.whenOpen(std::move(use)); }, openFolderOnDesktop),
      sounds_(queues_, mainLoop_),
      sleepNotes_(queues_),
      keepAwake_(sessionBus_, systemBus_, log),
      configureSheet_(window, firstFault),
      folderDialog_(window, boundedCalls_),
      folderChooser_([this](UseBus use) { sessionBus_.whenOpen(std::move(use)); }, window, folderDialog_),
      helpPanel_(window, workspace_) {
  if (!geocoder_) log.error(geocoder_.error());
  if (decoded) timedDecoder_.emplace(decoder_, clock, std::move(decoded));
  decoderProcesses_.prepare();  // loads its libraries while the window is made
}

Host Desktop::host() {
  return {.clock = clock_,
          .mainLoop = mainLoop_,
          .queues = queues_,
          .log = log_,
          .displays = displays_,
          .settings = settings_,
          .files = files_,
          .decoder = timedDecoder_ ? static_cast<ImageDecoder&>(*timedDecoder_) : decoder_,
          .random = random_,
          .memory = memory_,
          .text = text_,
          .geocoder = geocoder_ ? geocoder_.value().get() : nullptr,
          .application = application_,
          .fileBrowser = fileBrowser_,
          .trash = trash_,
          .sounds = sounds_,
          .tables = tables_,
          .folders = folders_,
          .programVersion = {kShortVersion, kBuildNumber},
          .systemVersion = systemVersion(),
          .configureSheet = &configureSheet_,
          .folderChooser = &folderChooser_,
          .helpPanel = &helpPanel_,
          .workspace = &workspace_,
          .metadataQuery = &metadataQuery_,
          .photoLibrary = &photoLibrary_,
          .boundedCalls = &boundedCalls_,
          .collationLocale = locale_};
}

}  // namespace lumivane

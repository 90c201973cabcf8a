// The program: makes everything that the slideshow stands on, in order, and hands control to the main loop.
#include <QApplication>
#include <QIcon>
#include <QSysInfo>
#include <QVersionNumber>
#include <csignal>
#include <iostream>

#include "app/AppDelegate.h"
#include "app/Version.h"
#include "imaging/decode/FileImageDecoder.h"
#include "imaging/places/OfflineGeocoder.h"
#include "platform/linux/DBusFileBrowser.h"
#include "platform/linux/DBusKeepAwake.h"
#include "platform/linux/DBusSleepNotes.h"
#include "platform/linux/DisplayServer.h"
#include "platform/linux/DrmDisplayRegistry.h"
#include "platform/linux/Environment.h"
#include "platform/linux/FreedesktopTrash.h"
#include "platform/linux/MessageBus.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/ProcFreeMemory.h"
#include "platform/linux/ProgramFolder.h"
#include "platform/linux/QtApplication.h"
#include "platform/linux/QtDisplays.h"
#include "platform/linux/QtMainLoop.h"
#include "platform/linux/QtTextRenderer.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemLog.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/ThemeSounds.h"
#include "platform/linux/ThreadSerialQueues.h"
#include "platform/linux/UserLocale.h"
#include "platform/linux/XdgUserFolders.h"
#include "settings/NamedDisplays.h"
#include "settings/SettingsStore.h"

namespace {

using namespace lumivane;

SystemVersion systemVersion() {
  const QVersionNumber version = QVersionNumber::fromString(QSysInfo::productVersion());
  return {version.majorVersion(), version.minorVersion(), version.microVersion()};
}

int fail(Log& log, const std::string& message) {
  log.error(message);
  std::cerr << "LumivaneApp: " << message << '\n';
  return 1;
}

int runSlideshow(QApplication& application, const std::vector<std::string>& arguments,
                 const Environment& environment, const Clock& clock, Log& log) {
  PosixFiles files;
  const UserFolders folders = xdgUserFolders(environment, files);
  SettingsStore settings(files, log, folders.config);
  ThreadSerialQueues queues(log);
  const QtDisplays windowSystemDisplays;
  const DrmDisplayRegistry registry(files, connectorsOf(windowSystemDisplays.attached()));
  const NamedDisplays displays(windowSystemDisplays, registry, log);
  QtTextRenderer text(log);
  FileImageDecoder decoder;
  TwisterRandom random;
  ProcFreeMemory memory;
  SharedTables tables;
  QtMainLoop mainLoop(log);
  QtApplication program;
  MessageBus sessionBus(QDBusConnection::SessionBus, queues, mainLoop);
  MessageBus systemBus(QDBusConnection::SystemBus, queues, mainLoop);
  DBusFileBrowser fileBrowser(
      log, [&sessionBus](UseBus use) { sessionBus.whenOpen(std::move(use)); }, openFolderOnDesktop);
  FreedesktopTrash trash;
  ThemeSounds sounds(queues, mainLoop);
  const auto geocoder =
      OfflineGeocoder::open(placesPath(programFolder(), valueOf(environment, "LUMIVANE_PLACES")),
                            userLocale(environment, "LC_MESSAGES"), mainLoop);
  if (!geocoder) log.error(geocoder.error());
  const Host host{.clock = clock,
                  .mainLoop = mainLoop,
                  .queues = queues,
                  .log = log,
                  .displays = displays,
                  .settings = settings,
                  .files = files,
                  .decoder = decoder,
                  .random = random,
                  .memory = memory,
                  .text = text,
                  .geocoder = geocoder ? geocoder.value().get() : nullptr,
                  .application = program,
                  .fileBrowser = fileBrowser,
                  .trash = trash,
                  .sounds = sounds,
                  .tables = tables,
                  .folders = folders,
                  .programVersion = {kShortVersion, kBuildNumber},
                  .systemVersion = systemVersion()};
  DBusSleepNotes sleepNotes(queues);
  DBusKeepAwake keepAwake(sessionBus, systemBus, log);
  AppDelegate delegate(host, mainLoop, sleepNotes, keepAwake);
  const TerminationSignals terminationSignals([&program] { program.terminate(); });
  delegate.applicationWillFinishLaunching(arguments);
  if (const auto started = delegate.applicationDidFinishLaunching(); !started)
    return fail(log, started.error());
  return application.exec();
}

}  // namespace

int main(int argc, char* argv[], char* environmentEntries[]) {
  std::signal(SIGPIPE, SIG_IGN);  // whoever reads the log may go; the show stays
  const std::vector<std::string> arguments(argv, argv + argc);
  const Environment environment = environmentFrom(environmentEntries);
  const SystemClock clock;
  const std::unique_ptr<Log> log = makeSystemLog(environment, clock);
  if (!displayServerReachable(environment))
    return fail(*log, "There is no display server to show pictures on.");
  QApplication application(argc, argv);
  QApplication::setApplicationName("Lumivane");
  QApplication::setDesktopFileName("de.orvik.LumivaneApp");
  QApplication::setApplicationVersion(kShortVersion);
  return runSlideshow(application, arguments, environment, clock, *log);
}

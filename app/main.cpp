// The program: makes everything that the slideshow stands on, in order, and hands control to the main loop.
#include <QApplication>
#include <QIcon>
#include <chrono>
#include <csignal>
#include <iostream>

#include "app/AppDelegate.h"
#include "app/Desktop.h"
#include "app/Version.h"
#include "platform/linux/DisplayLoss.h"
#include "platform/linux/DisplayServer.h"
#include "platform/linux/EndLimit.h"
#include "platform/linux/SilentBuses.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemLog.h"
#include "platform/linux/TerminationSignals.h"

namespace {

using namespace lumivane;

// For threads that may be asking a disk that does not answer.
constexpr std::chrono::seconds kLongestEnd{5};

constexpr const char* kApplicationId = "de.orvik.LumivaneApp";

// The desktop's theme has one once the program is installed.
QIcon applicationIcon() {
  QIcon icon;
  for (const int side : {48, 128, 256}) icon.addFile(QString(":/icons/%1.png").arg(side));
  return QIcon::fromTheme(kApplicationId, icon);
}

int fail(Log& log, const std::string& message) {
  log.error(message);
  std::cerr << "LumivaneApp: " << message << '\n';
  return 1;
}

int runSlideshow(QApplication& application, const std::vector<std::string>& arguments,
                 const Environment& environment, const Clock& clock, Log& log) {
  AppDelegate* owner = nullptr;  // of the window that dialogs lie over
  const auto window = [&owner]() -> QWindow* {
    return owner != nullptr && owner->window() != nullptr ? &owner->window()->qtWindow() : nullptr;
  };
  Desktop desktop(environment, clock, log, window);
  AppDelegate delegate(desktop.host(), desktop.mainLoop(), desktop.sleepNotes(), desktop.keepAwake());
  owner = &delegate;
  const TerminationSignals terminationSignals([&desktop] { desktop.application().terminate(); });
  const DisplayLoss displayLoss([&delegate] { delegate.displayLost(); });
  delegate.applicationWillFinishLaunching(arguments);
  if (const auto started = delegate.applicationDidFinishLaunching(); !started)
    return fail(log, started.error());
  const int status = application.exec();
  delegate.applicationWillTerminate();
  endProcessWithin(kLongestEnd);
  return status;
}

}  // namespace

int main(int argc, char* argv[], char* environmentEntries[]) {
  std::signal(SIGPIPE, SIG_IGN);  // whoever reads the log may go; the show stays
  const std::vector<std::string> arguments(argv, argv + argc);
  Environment environment = environmentFrom(environmentEntries);
  const SystemClock clock;
  const std::unique_ptr<Log> log = makeSystemLog(environment, clock);
  if (!displayServerReachable(environment))
    return fail(*log, "There is no display server to show pictures on.");
  leaveOutSilentBuses(environment, *log);
  QApplication application(argc, argv);
  QApplication::setApplicationName("Lumivane");
  QApplication::setDesktopFileName(kApplicationId);
  QApplication::setWindowIcon(applicationIcon());
  QApplication::setApplicationVersion(kShortVersion);
  return runSlideshow(application, arguments, environment, clock, *log);
}

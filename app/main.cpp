// The program: makes everything that the slideshow stands on, in order, and hands control to the main loop.
#include <QApplication>
#include <QIcon>
#include <chrono>
#include <csignal>
#include <iostream>

#include "app/AppDelegate.h"
#include "app/Desktop.h"
#include "app/FrameStatistics.h"
#include "app/MainThreadProbe.h"
#include "app/Version.h"
#include "platform/linux/DisplayLoss.h"
#include "platform/linux/DisplayServer.h"
#include "platform/linux/EndLimit.h"
#include "platform/linux/ProcessUse.h"
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

// What LUMIVANE_FRAME_STATS asks for.
struct Measuring {
  std::string file;  // empty: nothing is measured
  FrameStatistics statistics{processStart()};
};

Result<int> runUntilTheEnd(QApplication& application, Desktop& desktop, AppDelegate*& owner,
                           const std::vector<std::string>& arguments, const Clock& clock,
                           Measuring& measuring) {
  AppDelegate delegate(desktop.host(), desktop.mainLoop(), desktop.sleepNotes(), desktop.keepAwake(),
                       measuring.file.empty() ? nullptr : &measuring.statistics);
  owner = &delegate;
  const TerminationSignals terminationSignals([&desktop] { desktop.application().terminate(); });
  const DisplayLoss displayLoss([&delegate] { delegate.displayLost(); });
  delegate.applicationWillFinishLaunching(arguments);
  const auto started = delegate.applicationDidFinishLaunching();
  if (!started) {
    owner = nullptr;
    return Error{started.error()};
  }
  std::unique_ptr<MainThreadProbe> probe;
  if (!measuring.file.empty()) {
    probe = std::make_unique<MainThreadProbe>(desktop.mainLoop(), clock, [&measuring](Nanoseconds delay) {
      measuring.statistics.mainThreadAnswered(delay);
    });
  }
  const int status = application.exec();
  delegate.applicationWillTerminate();
  endProcessWithin(kLongestEnd);
  owner = nullptr;
  return status;
}

int runSlideshow(QApplication& application, const std::vector<std::string>& arguments,
                 const Environment& environment, const Clock& clock, Log& log) {
  AppDelegate* owner = nullptr;  // of the window that dialogs lie over
  const auto window = [&owner]() -> QWindow* {
    return owner != nullptr && owner->window() != nullptr ? &owner->window()->qtWindow() : nullptr;
  };
  Measuring measuring{.file = valueOf(environment, "LUMIVANE_FRAME_STATS")};
  DecodeListener decoded;
  if (!measuring.file.empty())
    decoded = [&measuring](Nanoseconds time) { measuring.statistics.pictureDecoded(time); };
  Desktop desktop(environment, clock, log, window, std::move(decoded));
  const Result<int> status = runUntilTheEnd(application, desktop, owner, arguments, clock, measuring);
  if (!status) return fail(log, status.error());
  if (measuring.file.empty()) return status.value();
  const PeakMemory peakMemory{peakMemoryBytes(), desktop.decoderPeakMemoryBytes()};
  const std::string text = measuring.statistics.text(clock.now(), peakMemory);
  const auto written = desktop.host().files.writeAtomically(measuring.file, text);
  return written ? status.value() : fail(log, written.error());
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

#include "platform/linux/DisplayLoss.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QMessageLogContext>
#include <QMetaObject>
#include <QString>
#include <atomic>
#include <thread>
#include <utility>

// Last: its macros would change the meaning of Qt's headers.
#include <X11/Xlib.h>

namespace lumivane {
namespace {

struct Watch {
  std::function<void()> onLoss;
  std::thread::id mainThread;
  std::atomic<bool> ending{false};
  QtMessageHandler otherMessages = nullptr;
  XIOErrorHandler otherErrors = nullptr;
};

// Handlers of Qt and Xlib know nothing but the message and the display: what they need has to stand here.
std::atomic<Watch*> watch{nullptr};
std::atomic<bool> lossNoticed{false};

// What Qt says of it right before it ends the process.
bool tellsOfLoss(const QString& message) {
  return message.startsWith("The X11 connection broke") ||
         message.startsWith("The Wayland connection broke") ||
         message.startsWith("The Wayland connection experienced a fatal error");
}

[[noreturn]] void endProcess(Watch& current) {
  if (!current.ending.exchange(true)) current.onLoss();
  // Not exit(): other threads still draw, and what they use must not be taken down below them.
  ::_exit(DisplayLoss::kExitStatus);
}

// Another thread that notices asks the main thread for the end, and goes no further: Qt or Xlib would end the process
// below it. A main thread that waits for that very thread never hears of it, and gets no more than this time.
[[noreturn]] void endOnMainThread(Watch& current) {
  constexpr unsigned kLongestWaitSeconds = 3;
  lossNoticed = true;
  if (std::this_thread::get_id() == current.mainThread) endProcess(current);
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [&current] { endProcess(current); }, Qt::QueuedConnection);
  for (unsigned left = kLongestWaitSeconds; left != 0;) left = ::sleep(left);
  ::_exit(DisplayLoss::kExitStatus);
}

void noteMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  Watch* const current = watch.load();
  if (current == nullptr) return;
  if (current->otherMessages != nullptr) current->otherMessages(type, context, message);
  if (tellsOfLoss(message)) endOnMainThread(*current);
}

int noteXlibError(Display* /*display*/) {
  endOnMainThread(*watch.load());
}

}  // namespace

bool DisplayLoss::noticed() {
  return lossNoticed;
}

DisplayLoss::DisplayLoss(std::function<void()> onLoss) {
  watch = new Watch{.onLoss = std::move(onLoss), .mainThread = std::this_thread::get_id()};
  watch.load()->otherMessages = qInstallMessageHandler(noteMessage);
  watch.load()->otherErrors = ::XSetIOErrorHandler(noteXlibError);
}

DisplayLoss::~DisplayLoss() {
  Watch* const current = watch.load();
  ::XSetIOErrorHandler(current->otherErrors);
  qInstallMessageHandler(current->otherMessages);
  watch = nullptr;
  delete current;
}

}  // namespace lumivane

#include "platform/linux/DisplayLoss.h"

#include <unistd.h>

#include <QMessageLogContext>
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
  QtMessageHandler otherMessages = nullptr;
  XIOErrorHandler otherErrors = nullptr;
};

// Handlers of Qt and Xlib know nothing but the message and the display: what they need has to stand here.
std::atomic<Watch*> watch{nullptr};

// What Qt says of it right before it ends the process.
bool tellsOfLoss(const QString& message) {
  return message.startsWith("The X11 connection broke") ||
         message.startsWith("The Wayland connection broke") ||
         message.startsWith("The Wayland connection experienced a fatal error");
}

[[noreturn]] void endProcess() {
  if (Watch* const current = watch.exchange(nullptr)) current->onLoss();
  // Not exit(): other threads still draw, and what they use must not be taken down below them.
  ::_exit(DisplayLoss::kExitStatus);
}

void noteMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  const Watch* const current = watch.load();
  if (current == nullptr) return;
  if (current->otherMessages != nullptr) current->otherMessages(type, context, message);
  if (tellsOfLoss(message) && std::this_thread::get_id() == current->mainThread) endProcess();
}

// The thread that draws notices through Xlib, whose own handler would end the process at once. It waits here until the
// main thread has noticed through Qt.
int endOrWait(Display* /*display*/) {
  const Watch* const current = watch.load();
  if (current != nullptr && std::this_thread::get_id() == current->mainThread) endProcess();
  for (;;) ::pause();
}

}  // namespace

DisplayLoss::DisplayLoss(std::function<void()> onLoss) {
  watch = new Watch{std::move(onLoss), std::this_thread::get_id()};
  watch.load()->otherMessages = qInstallMessageHandler(noteMessage);
  watch.load()->otherErrors = ::XSetIOErrorHandler(endOrWait);
}

DisplayLoss::~DisplayLoss() {
  Watch* const current = watch.load();
  if (current == nullptr) return;
  ::XSetIOErrorHandler(current->otherErrors);
  qInstallMessageHandler(current->otherMessages);
  watch = nullptr;
  delete current;
}

}  // namespace lumivane

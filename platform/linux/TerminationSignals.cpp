#include "platform/linux/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace lumivane {
namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT};

// A handler knows nothing but the number of its signal: where it writes to has to stand here.
std::atomic<int> handlerWritesTo{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void noteSignal(int /*number*/) {
  const int before = errno;
  const char byte = 1;
  // A full pipe has said all that there is to say.
  [[maybe_unused]] const ssize_t written = ::write(handlerWritesTo.load(), &byte, 1);
  errno = before;
}

void handleWith(void (*handler)(int), int flags) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  for (const int number : kSignals) ::sigaction(number, &action, nullptr);
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal) {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  readEnd_ = FileDescriptor(ends[0]);
  writeEnd_ = FileDescriptor(ends[1]);
  notifier_ = std::make_unique<QSocketNotifier>(readEnd_.get(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [fd = readEnd_.get(), onSignal = std::move(onSignal)] {
                     std::array<char, 16> bytes{};
                     if (::read(fd, bytes.data(), bytes.size()) > 0) onSignal();
                   });
  handlerWritesTo = writeEnd_.get();
  handleWith(noteSignal, SA_RESTART | static_cast<int>(SA_RESETHAND));
}

TerminationSignals::~TerminationSignals() {
  if (handlerWritesTo == -1) return;
  handleWith(SIG_DFL, 0);
  handlerWritesTo = -1;
}

}  // namespace lumivane

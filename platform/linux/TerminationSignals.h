// Turns SIGTERM and SIGINT into a call on the main loop, so that the program ends as it does when its window is closed.
//
// Threads: main only; one object at a time.
// Owns:    the two signals' handlers, from construction to destruction.
// Errors:  without a pipe to be had the signals keep ending the program at once.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "platform/linux/FileDescriptor.h"

namespace lumivane {

class TerminationSignals {
 public:
  // A second signal of the same kind ends the program at once, should the end hang.
  explicit TerminationSignals(std::function<void()> onSignal);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  FileDescriptor readEnd_;
  FileDescriptor writeEnd_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace lumivane

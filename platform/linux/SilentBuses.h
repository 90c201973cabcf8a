// Takes message buses that do not answer out of the process's environment. Qt itself opens the session's bus on the main
// thread, as for the accessibility of widgets, and waits for it without end; a bus that is said to be nowhere fails at
// once.
//
// Threads: main only, before any other thread and before Qt.
// Units:   real time.
// Errors:  logged: the program then does without that bus until its end.
#pragma once

#include <chrono>
#include <string>

#include "platform/Log.h"
#include "platform/linux/Environment.h"

namespace lumivane {

// How long a bus may take to let a client in. It is usually a millisecond.
inline constexpr std::chrono::milliseconds kPatienceWithBus{500};

// Whether a bus at this address lets us in within the time, or refuses us within it.
[[nodiscard]] bool busAnswers(const std::string& address, std::chrono::milliseconds limit);

// Looks at the buses of the session and of the system, and changes both the process's own environment and the copy.
void leaveOutSilentBuses(Environment& environment, Log& log,
                         std::chrono::milliseconds limit = kPatienceWithBus);

}  // namespace lumivane

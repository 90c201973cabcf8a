// Ends the process after a time, whatever still hangs: a thread that asks a dead disk can neither be joined nor stopped.
//
// Threads: any, once; what it takes away from other threads must have been saved before.
// Errors:  where no timer can be had, the end is waited for without limit.
#pragma once

#include <chrono>

namespace lumivane {

// The exit status is then 0: by the time this is called, the show has ended in order.
void endProcessWithin(std::chrono::milliseconds limit);

}  // namespace lumivane

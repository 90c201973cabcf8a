// Writes into the log from where it was called.
//
// Threads: any.
// Errors:  frames without a known name are shown by their address.
#pragma once

#include "platform/Log.h"

namespace lumivane {

void printStacktrace(Log& log);

}  // namespace lumivane

// Ends a repeating job from within the job itself, which must not destroy its own timer.
//
// Threads: main only.
// Errors:  none.
#pragma once

#include <memory>
#include <utility>

#include "platform/MainLoop.h"

namespace lumivane {

// The timer goes with the next turn of the loop; until then the job has to know by itself that it is over.
inline void retireTimer(MainLoop& mainLoop, std::unique_ptr<Timer> timer) {
  mainLoop.post([timer = std::shared_ptr<Timer>(std::move(timer))] {});
}

}  // namespace lumivane

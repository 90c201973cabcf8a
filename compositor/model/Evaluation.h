// What a snapshot looks like at one moment.
//
// Threads: any; pure.
// Units:   seconds of media time.
// Errors:  none.
#pragma once

#include "compositor/model/DrawList.h"
#include "compositor/model/LayerSnapshot.h"

namespace lumivane {

// Quads from back to front, each layer's shadow, background, contents, and then its sublayers. What is hidden,
// transparent or without area is left out; its texture is wanted all the same (TexturesWanted.h).
[[nodiscard]] DrawList evaluate(const FrameSnapshot& frame, Seconds presentationTime);
// The same in place of what the list holds. One list for frame after frame has its room already: nothing is allocated.
void evaluate(const FrameSnapshot& frame, Seconds presentationTime, DrawList& list);

// Whether anything that can be seen changes at or after this time. Once false, it stays false for this snapshot.
[[nodiscard]] bool isMoving(const FrameSnapshot& frame, Seconds time);

}  // namespace lumivane

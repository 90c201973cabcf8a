// Which textures a snapshot needs: what it shows now, and what it holds ready to be shown.
//
// Threads: any; pure.
// Units:   seconds of media time.
// Errors:  none.
#pragma once

#include <vector>

#include "compositor/model/DrawList.h"
#include "compositor/model/LayerSnapshot.h"

namespace lumivane {

// Every layer with contents wants its texture, hidden and transparent ones too: a layer of opacity 0 is how a
// picture is taken up before it is needed. The levels are those that the layer can sample at the largest extent
// that its bounds and its motion reach: a layer held ready has to be as large as it can get when it is shown.
// They come in place of what the vector holds, whose room is used again: this is asked for every frame.
void texturesWanted(const FrameSnapshot& frame, Seconds presentationTime, std::vector<WantedTexture>& wanted);

}  // namespace lumivane

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
// that its motion reaches. For a layer that cannot be seen and has no animation yet this is a guess, since the
// motion comes with the showing: kGrowthAhead times the extent at which it would fill its bounds.
// They come in place of what the vector holds, whose room is used again: this is asked for every frame.
void texturesWanted(const FrameSnapshot& frame, Seconds presentationTime, std::vector<WantedTexture>& wanted);

// A pan across seven tenths of a picture shows it 1.43 times as large as the screen, across half of a panorama
// twice as wide (which is less than 1.5 times the width at which a panorama fills the screen).
inline constexpr double kGrowthAhead = 1.5;

}  // namespace lumivane

// Makes the layers that pictures are shown on, with the animations that move and fade them.
//
// Threads: main only.
// Owns:    nothing; a new layer belongs to the caller and is not in any tree yet.
// Units:   points, origin lower left, y up; seconds of media time.
// Errors:  none.
#pragma once

#include <cstdint>
#include <memory>

#include "compositor/model/BasicAnimation.h"
#include "compositor/model/Layer.h"
#include "platform/Log.h"
#include "platform/RandomSource.h"

namespace lumivane {

// The keys under which the animations of a picture layer are attached.
inline constexpr char kBoundsAnimKey[] = "myBoundsAnim";
inline constexpr char kPositionAnimKey[] = "myPositionAnim";
inline constexpr char kFadeInAnimKey[] = "MyFadeInAnim";
inline constexpr char kFadeOutAnimKey[] = "MyFadeOutAnim";

// Where and how long pictures are shown, as it stands when a layer is made.
struct PictureStage {
  RectPt drawRect;                    // the view's drawing area
  std::int32_t durationPerImage = 0;  // seconds; one pass of the motion
  Seconds now{0};                     // media time at which the motion begins
};

// The picture at rest, fitted whole into the screen (contents gravity resize-aspect).
[[nodiscard]] std::unique_ptr<Layer> makeImageLayer(BitmapRef image, const PictureStage& stage);

// The same, growing or shrinking about the screen's centre, to and fro.
[[nodiscard]] std::unique_ptr<Layer> makeImageLayer(BitmapRef image, SizePt fromSize, SizePt toSize,
                                                    const PictureStage& stage);

// The picture panning and zooming to and fro between two parts of it chosen by chance. Width and height are the
// picture's pixel size after orientation. Draws the random numbers of calcKenBurnsForImageWidth.
[[nodiscard]] std::unique_ptr<Layer> makeImageLayerWithKenBurns(BitmapRef image, float width, float height,
                                                                const PictureStage& stage,
                                                                RandomSource& random, Log& log);

// A fade, not yet attached. Its end value stays in force for as long as it is attached.
[[nodiscard]] BasicAnimation makeOpacityAnimWithDuration(Seconds duration, double from, double to);

}  // namespace lumivane

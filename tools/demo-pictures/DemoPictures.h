// The dozen pictures that a newcomer without pictures of his own is shown, all of them painted by this program.
//
// Threads: painting different pictures at the same time is fine.
// Units:   pixels; degrees, north and east positive.
// Errors:  none.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/demo-pictures/Canvas.h"

namespace lumivane::demo {

struct Position {
  double latitude = 0, longitude = 0;
};

struct Format {
  int width = 0, height = 0;  // as seen
  bool storedTurned = false;  // stored lying on its side, with the orientation that puts it upright
};

struct DemoPicture {
  std::string fileName;
  Format format;

  std::string caption;
  std::vector<std::string> keywords;
  std::string taken;  // as Exif writes it: "2024:09:14 06:52:10"
  std::optional<Position> position;
  std::function<void(Canvas&)> paint;
};

[[nodiscard]] std::vector<DemoPicture> demoPictures();

// Mountains.cpp
void paintMistyRidges(Canvas& canvas);
void paintAlpineLake(Canvas& canvas);
void paintSeaOfClouds(Canvas& canvas);
// Plains.cpp
void paintDunes(Canvas& canvas);
void paintLavender(Canvas& canvas);
void paintSunsetSea(Canvas& canvas);
// Nights.cpp
void paintNorthernLights(Canvas& canvas);
void paintMilkyWayOverSea(Canvas& canvas);
void paintMoonrise(Canvas& canvas);
// Designs.cpp
void paintForestInFog(Canvas& canvas);
void paintSilk(Canvas& canvas);
void paintPaperHills(Canvas& canvas);

}  // namespace lumivane::demo

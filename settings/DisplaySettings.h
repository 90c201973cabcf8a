// Everything that the slideshow of one display can be set to: the working copy of its settings.
//
// Threads: a value.
// Units:   seconds, pixels, KiB and points, as each field says. Nothing is clamped: what was stored is what is here.
// Errors:  none; all zero and empty is what a display without any settings to read gets.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumivane {

struct DisplaySettings {
  // One byte blob for each folder. Exactly one empty blob: no folder was ever chosen.
  std::vector<std::string> directoryBookmarks_;
  std::int32_t durationPerImage_ = 0;  // seconds each picture stays on screen
  float initZoomInFactor_ = 0;         // where the plain zoom starts; 1 = the whole picture
  std::uint32_t excludeSize_ = 0;      // pixels; pictures with a shorter side are left out
  std::uint32_t excludekB_ = 0;        // KiB; files of this size and smaller ones are not collected
  bool showImagePath_ = false;
  bool useSpotlight_ = false;  // collect by the desktop's index rather than by a walk
  bool displayFilename_ = false;
  bool zoomIsOn_ = false;
  bool kenBurnsIsOn_ = false;
  std::uint32_t fontSize_ = 0;  // points
  std::int32_t infoDelay_ = 0;  // seconds
  bool useAlbum_ = false;
  std::vector<std::string> skipPatterns_;  // one regular expression each; may hold empty ones
  bool dontRandomize_ = false;
  bool startWithRandom_ = false;
  bool allowBlackBorders_ = false;
  float blackBorderAvoidance_ = 0;
  bool crossDissolve_ = false;
  float crossDissolveDuration_ = 0;  // seconds
  bool showFileExtension_ = false;
  bool showImageInfo_ = false;
  std::string selectedAlbum_;
  bool enableDeleteAtRuntime_ = false;

  bool operator==(const DisplaySettings&) const = default;
};

}  // namespace lumivane

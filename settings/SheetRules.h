// What the preferences sheet makes of the numbers and texts that are typed into it.
//
// Threads: any; pure functions.
// Units:   as DisplaySettings says.
// Errors:  none: a text without a number counts as 0, and what is out of range is corrected silently.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumivane {

// The whole number that a text begins with, white space before it aside; 0 when there is none. What does not fit
// becomes the nearest that does.
[[nodiscard]] std::int32_t wholeNumberOfField(std::string_view text);
// The same for a decimal number, with a point or a comma.
[[nodiscard]] float decimalNumberOfField(std::string_view text);

// The text of a field that shows a number: read again, it gives the same number. Numbers without a sign that are
// too large for one with it are shown as what was typed for them, a negative one.
[[nodiscard]] std::string fieldText(std::int32_t number);
[[nodiscard]] std::string fieldText(std::uint32_t number);
[[nodiscard]] std::string fieldText(float number);

// Too short a duration is refused: the one in force stays.
[[nodiscard]] std::int32_t acceptedDuration(std::int32_t entered, std::int32_t inForce);

struct ZoomInFactorEntry {
  float initZoomInFactor = 0;   // to be stored
  bool startsNewCycle = false;  // it was accepted as entered, and is not what it was
};
[[nodiscard]] ZoomInFactorEntry acceptedZoomInFactor(float entered, float inForce);

// A negative entry counts as the very large number that its bits stand for, here and below.
[[nodiscard]] std::uint32_t acceptedExcludeSize(std::int32_t entered);
[[nodiscard]] std::uint32_t acceptedFontSize(std::int32_t entered);

// At most half of the time that a picture stays.
[[nodiscard]] std::int32_t acceptedInfoDelay(std::int32_t entered, std::int32_t durationPerImage);

// One pattern a line, without the white space around it and without blank lines; in their order, twice where they
// stand twice.
[[nodiscard]] std::vector<std::string> skipPatternsOf(std::string_view text);

}  // namespace lumivane

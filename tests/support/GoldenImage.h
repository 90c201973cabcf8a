// Compares what was drawn with a picture that was looked at and found right.
//
// Errors:  a difference leaves NAME.out.png and NAME.diff.png (eight times the difference) in the working folder.
//          LUMIVANE_UPDATE_GOLDEN=1 writes the golden pictures anew instead: look at each before committing it.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/OffscreenGl.h"

namespace lumivane {

// GPUs and their drivers round differently; a fault of drawing is far beyond this.
inline constexpr int kGoldenMostOf255 = 2;
inline constexpr double kGoldenMeanOf255 = 0.3;

// `folder` holds NAME.png.
[[nodiscard]] testing::AssertionResult matchesGolden(const ReadBack& drawn, const std::string& folder,
                                                     const std::string& name);

}  // namespace lumivane

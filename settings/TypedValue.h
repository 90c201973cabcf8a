// What a stored value means to a reader that wants a number, a truth, a text or a list: settings files are also
// written by hand and by other programs.
//
// Threads: any; pure functions.
// Errors:  absent when the value cannot be read as what is wanted.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/PropertyList.h"

namespace lumivane {

// Decimal text, white space around it ignored. "inf" and "nan" are no numbers.
[[nodiscard]] std::optional<double> numberOfText(std::string_view text);

// Numbers convert among each other: fractions are cut off, what is out of range becomes the nearest that is in it,
// a truth is 0 or 1, text is read as decimal. Infinities and not-a-number cannot be read as anything.
[[nodiscard]] std::optional<std::int64_t> asInteger(const PropertyList& value);
[[nodiscard]] std::optional<float> asFloat(const PropertyList& value);
// True exactly when the number is not zero.
[[nodiscard]] std::optional<bool> asBool(const PropertyList& value);
[[nodiscard]] std::optional<std::string> asText(const PropertyList& value);
// An array in which everything is data.
[[nodiscard]] std::optional<std::vector<std::string>> asBlobs(const PropertyList& value);

}  // namespace lumivane

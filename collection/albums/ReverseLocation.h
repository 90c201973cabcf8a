// Takes apart the place names that a library keeps with a picture that has a position: an archive of objects in a
// binary property list, as Apple's NSKeyedArchiver writes it.
//
// Threads: any; a pure function.
// Errors:  bytes that are no such archive name no places.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lumivane {

// Quarter, town, state and country, those that are known, without repetitions.
[[nodiscard]] std::vector<std::string> placesInReverseLocation(std::string_view archive);

}  // namespace lumivane

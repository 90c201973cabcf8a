// What a person would call a monitor.
//
// Threads: any; pure functions.
// Errors:  none.
#pragma once

#include <string>
#include <string_view>

namespace lumivane {

// From what the window system tells: the maker and the model ("Dell Inc.", "DELL U2720Q" is "DELL U2720Q"), else the
// connector ("HDMI-1"), else "unknown". Company suffixes and a maker that the model repeats are left out; control
// characters and needless blanks as well.
[[nodiscard]] std::string displayNameFrom(std::string_view maker, std::string_view model,
                                          std::string_view connector);

}  // namespace lumivane

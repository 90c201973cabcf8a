// The properties of a picture as bytes, and back again with every number and text checked.
//
// Threads: pure functions.
// Units:   as in PropertyDictionary.h.
// Errors:  what makes no sense fails the reader, and with it the whole message.
#pragma once

#include "imaging/PropertyDictionary.h"
#include "imaging/process/Wire.h"

namespace lumivane {

// Limits of what is believed. Texts that are read from files are a little shorter, so nothing real meets them.
inline constexpr std::size_t kLongestPropertyText = std::size_t{128} << 10;
inline constexpr std::size_t kMostPropertyItems = 1000;
// All of them together. Lists lose their last items when a picture has more to say.
inline constexpr std::size_t kMostPropertyBytes = std::size_t{960} << 10;

void writeProperties(WireWriter& writer, const PropertyDictionary& properties);
[[nodiscard]] PropertyDictionary readProperties(WireReader& reader);

}  // namespace lumivane

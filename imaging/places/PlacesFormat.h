// The file of places, byte by byte. resources/places/make-places writes it, PlacesFile.h reads it in place.
//
// All numbers are little-endian and unsigned unless said otherwise.
//
//   header, 32 bytes
//     0   8 bytes  "LVPLACES"
//     8   uint32   version: 1
//     12  uint32   number of places, P: 1 to 4,000,000
//     16  uint32   number of countries, C: 1 to 256
//     20  uint32   bytes of names, N: 2 to 2^24
//     24  uint32   size of the whole file: 32 + 16 P + 2 C + N + 4
//     28  4 bytes  zero
//   P places, 16 bytes each
//     0   int32 x 3  where on the globe: a point of the unit sphere, each coordinate in units of 2^-30 (6 mm). x points
//                    to latitude 0, longitude 0; y to longitude 90 east; z to the north pole
//     12  uint32     country (its number, upper 8 bits) and name (where it begins among the names, lower 24 bits)
//   C country codes of ISO 3166-1, 2 capital letters each
//   N bytes of names: for each its length in bytes (1 byte, not 0) and the name in UTF-8; places share names
//   uint32, CRC-32 (that of zlib) of everything before it
//
// The places are in the order of a k-d tree. The middle place of a range (that of number low + (high - low) / 2) parts it:
// what comes before has no greater coordinate, what comes after no smaller one; by x in the whole file, by y in its
// halves, by z in its quarters, by x again, and so on. Points in space rather than degrees make the date line and the poles
// places like any other, and the nearest in space is the nearest over ground.
//
// Threads: none of its own; constants.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace lumivane::places_format {

inline constexpr std::string_view kMagic = "LVPLACES";
inline constexpr std::uint32_t kVersion = 1;

inline constexpr std::size_t kVersionAt = 8;
inline constexpr std::size_t kPlaceCountAt = 12;
inline constexpr std::size_t kCountryCountAt = 16;
inline constexpr std::size_t kNameBytesAt = 20;
inline constexpr std::size_t kFileSizeAt = 24;
inline constexpr std::size_t kHeaderBytes = 32;
inline constexpr std::size_t kPlaceBytes = 16;
inline constexpr std::size_t kPackedAt = 12;  // within a place
inline constexpr std::size_t kCountryBytes = 2;
inline constexpr std::size_t kChecksumBytes = 4;

inline constexpr std::uint32_t kMostPlaces = 4'000'000;
inline constexpr std::uint32_t kMostCountries = 256;
inline constexpr std::uint32_t kNameBits = 24;
inline constexpr double kUnit = 1 << 30;

}  // namespace lumivane::places_format

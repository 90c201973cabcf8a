// Puts the members of an album in the order in which the library's own application shows them.
//
// Threads: any; a pure function.
// Errors:  none; an order that is not known is the one that the user made.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "collection/albums/PictureRows.h"

namespace lumivane {

// What an album is sorted by, as its library stores it.
inline constexpr std::int64_t kSortedByHand = 0;
inline constexpr std::int64_t kSortedByDate = 1;
inline constexpr std::int64_t kSortedByTitle = 5;

// Pictures of the same date or title stay in the order that the user made; those without a title come first. Not
// ascending turns the whole round. The locale is as in FileNameOrder.h.
void sortPictures(std::vector<PictureRow>& pictures, std::int64_t sortKey, bool ascending,
                  const std::string& locale);

}  // namespace lumivane

#include "collection/albums/PictureOrder.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

#include "collection/FileNameOrder.h"

namespace lumivane {
namespace {

// The place of every title among all of them.
std::unordered_map<std::string, std::size_t> ranksOfTitles(const std::vector<PictureRow>& pictures,
                                                           const std::string& locale) {
  std::unordered_map<std::string, std::size_t> ranks;
  for (const PictureRow& picture : pictures) ranks.emplace(picture.title, 0);
  std::vector<std::string> titles;
  titles.reserve(ranks.size());
  for (const auto& [title, rank] : ranks) titles.push_back(title);
  sortByFileName(titles, locale);
  for (std::size_t i = 0; i < titles.size(); ++i) ranks[titles[i]] = i;
  return ranks;
}

void sortByTitle(std::vector<PictureRow>& pictures, const std::string& locale) {
  const auto ranks = ranksOfTitles(pictures, locale);
  std::ranges::stable_sort(pictures, {}, [&](const PictureRow& picture) {
    return std::pair(!picture.title.empty(), ranks.at(picture.title));
  });
}

}  // namespace

void sortPictures(std::vector<PictureRow>& pictures, std::int64_t sortKey, bool ascending,
                  const std::string& locale) {
  std::ranges::sort(pictures, {},
                    [](const PictureRow& picture) { return std::pair(picture.position, picture.key); });
  if (sortKey == kSortedByDate) std::ranges::stable_sort(pictures, {}, &PictureRow::created);
  if (sortKey == kSortedByTitle) sortByTitle(pictures, locale);
  if (!ascending) std::ranges::reverse(pictures);
}

}  // namespace lumivane

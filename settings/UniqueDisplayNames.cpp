#include "settings/UniqueDisplayNames.h"

#include <algorithm>

namespace lumivane {
namespace {

using Names = std::vector<std::string>;

bool occursAfter(const Names& names, std::size_t position) {
  const auto next = names.begin() + static_cast<Names::difference_type>(position) + 1;
  return std::find(next, names.end(), names[position]) != names.end();
}

// One pass from the first name to the last but one. Says whether it changed anything.
bool appendNumbers(Names& names, const std::vector<DisplayNumber>& numbers) {
  bool changed = false;
  for (std::size_t i = 0; i + 1 < names.size(); ++i) {
    if (!occursAfter(names, i)) continue;
    const std::string shared = names[i];
    for (std::size_t j = i; j < names.size(); ++j) {
      if (names[j] == shared) names[j] = shared + "_" + std::to_string(numbers[j]);
    }
    changed = true;
  }
  return changed;
}

}  // namespace

void makeNamesUnique(Names& names, const std::vector<DisplayNumber>& numbers) {
  // One pass is enough but for names that already look suffixed. Names only grow longer, and those of different
  // numbers apart, so a pass per name ends even the most contrived case.
  for (std::size_t pass = 0; pass <= names.size(); ++pass) {
    if (!appendNumbers(names, numbers)) return;
  }
}

}  // namespace lumivane

#include "collection/PathTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Paths = std::vector<std::string>;

// By bytes; folders of the same name as the one before, case aside, count as one.
std::vector<OrderedSibling> byName(const std::vector<Sibling>& siblings) {
  const auto folded = [](const Sibling& sibling) {
    std::string name(sibling.name);
    for (char& c : name) c = static_cast<char>(std::tolower(c));
    return std::pair(name, sibling.isFolder);
  };
  std::vector<Sibling> sorted = siblings;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [&](const Sibling& a, const Sibling& b) { return folded(a) < folded(b); });
  std::vector<OrderedSibling> result;
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    const bool same = i > 0 && sorted[i].isFolder && folded(sorted[i]) == folded(sorted[i - 1]);
    result.push_back({sorted[i].number, sorted[i].isFolder, same});
  }
  return result;
}

Paths toured(const Paths& paths) {
  Paths result;
  for (const std::uint32_t path : PathTree(paths).tour(byName)) result.push_back(paths[path]);
  return result;
}

TEST(PathTree, folders_come_where_their_names_belong) {
  EXPECT_THAT(toured({"/p/c", "/p/b/2", "/p/a", "/p/b/1", "/p/b.jpg"}),
              ElementsAre("/p/a", "/p/b/1", "/p/b/2", "/p/b.jpg", "/p/c"));
}

TEST(PathTree, folders_that_count_as_one_are_listed_as_one) {
  EXPECT_THAT(toured({"/P/2", "/p/1", "/p/x/4", "/P/X/3", "/p/3"}),
              ElementsAre("/p/1", "/P/2", "/p/3", "/P/X/3", "/p/x/4"));
}

TEST(PathTree, odd_paths) {
  EXPECT_THAT(toured({}), IsEmpty());
  EXPECT_THAT(toured({"//b", "a", "", "/b", "//a/", ""}), ElementsAre("", "", "//a/", "//b", "/b", "a"));
}

TEST(PathTree, a_path_of_nothing_but_slashes_takes_no_longer_than_others) {
  const std::string slashes(100'000, '/');
  EXPECT_THAT(toured({slashes + "b", slashes + "a"}), ElementsAre(slashes + "a", slashes + "b"));
}

}  // namespace
}  // namespace lumivane

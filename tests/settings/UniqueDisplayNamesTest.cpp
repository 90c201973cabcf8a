#include "settings/UniqueDisplayNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace lumivane {
namespace {

using Names = std::vector<std::string>;
using Numbers = std::vector<DisplayNumber>;
using testing::ElementsAre;

Names unique(Names names, const Numbers& numbers) {
  makeNamesUnique(names, numbers);
  return names;
}

TEST(UniqueDisplayNames, NamesThatAreUniqueStayBare) {
  EXPECT_THAT(unique({}, {}), ElementsAre());
  EXPECT_THAT(unique({"Color LCD"}, {1}), ElementsAre("Color LCD"));
  EXPECT_THAT(unique({"A", "B", "C"}, {1, 2, 3}), ElementsAre("A", "B", "C"));
}

TEST(UniqueDisplayNames, TheFirstOfTwoGetsItsNumberToo) {
  EXPECT_THAT(unique({"Color LCD", "Color LCD"}, {1, 2}), ElementsAre("Color LCD_1", "Color LCD_2"));
}

TEST(UniqueDisplayNames, OthersInBetweenStayBare) {
  EXPECT_THAT(unique({"A", "B", "A"}, {5, 6, 7}), ElementsAre("A_5", "B", "A_7"));
}

TEST(UniqueDisplayNames, ANameThatOccursThriceIsRenamedThrice) {
  EXPECT_THAT(unique({"A", "A", "B", "A"}, {4, 9, 2, 7}), ElementsAre("A_4", "A_9", "B", "A_7"));
}

TEST(UniqueDisplayNames, SeveralSharedNames) {
  EXPECT_THAT(unique({"A", "B", "B", "A"}, {1, 2, 3, 4}), ElementsAre("A_1", "B_2", "B_3", "A_4"));
}

TEST(UniqueDisplayNames, UnknownDisplaysAreToldApart) {
  EXPECT_THAT(unique({"unknown", "unknown"}, {1, 2}), ElementsAre("unknown_1", "unknown_2"));
}

TEST(UniqueDisplayNames, EmptyNamesAreToldApart) {
  EXPECT_THAT(unique({"", ""}, {1, 2}), ElementsAre("_1", "_2"));
}

TEST(UniqueDisplayNames, ASuffixedNameNoLongerMatchesTheBareOne) {
  // "A_1" at the end is another display's own name, met after the first A has become A_1.
  EXPECT_THAT(unique({"A", "A", "A_9"}, {1, 2, 3}), ElementsAre("A_1", "A_2", "A_9"));
}

TEST(UniqueDisplayNames, ADisplayReallyCalledLikeASuffixedOneIsToldApart) {
  EXPECT_THAT(unique({"A", "A", "A_2"}, {1, 2, 3}), ElementsAre("A_1", "A_2_2", "A_2_3"));
  // Here the clash comes up only behind the place where it could be seen in one go.
  EXPECT_THAT(unique({"A_5", "A", "A"}, {7, 5, 6}), ElementsAre("A_5_7", "A_5_5", "A_6"));
}

TEST(UniqueDisplayNames, NoTwoDisplaysEverShareAName) {
  const Names pool{"A", "A_1", "A_2", "A_1_1", "A_1_2", "A_2_2", "A_2_1", "A_3_3", "B"};
  const std::vector<Numbers> numberings{{1, 2, 3, 4}, {4, 3, 2, 1}, {2, 1, 12, 21}, {1, 11, 111, 3}};
  for (std::size_t all = 0; all < pool.size() * pool.size() * pool.size() * pool.size(); ++all) {
    std::size_t rest = all;
    Names names;
    for (int i = 0; i < 4; ++i, rest /= pool.size()) names.push_back(pool[rest % pool.size()]);
    for (const Numbers& numbers : numberings) {
      const Names result = unique(names, numbers);
      ASSERT_EQ(std::set<std::string>(result.begin(), result.end()).size(), 4U)
          << names[0] << ' ' << names[1] << ' ' << names[2] << ' ' << names[3];
    }
  }
}

}  // namespace
}  // namespace lumivane

#include "collection/FileNameOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> sorted(std::vector<std::string> paths, const std::string& locale = "en_US") {
  sortByFileName(paths, locale);
  return paths;
}

TEST(FileNameOrder, NumbersCompareByValue) {
  EXPECT_THAT(sorted({"/p/file10.jpg", "/p/file2.jpg", "/p/file1.jpg", "/p/file0100.jpg"}),
              ElementsAre("/p/file1.jpg", "/p/file2.jpg", "/p/file10.jpg", "/p/file0100.jpg"));
  EXPECT_THAT(sorted({"/p/10/a", "/p/9/a"}), ElementsAre("/p/9/a", "/p/10/a"));
}

TEST(FileNameOrder, CaseCountsOnlyBetweenEqualNames) {
  EXPECT_THAT(sorted({"/p/Zebra.jpg", "/p/apple.jpg", "/p/Banana.jpg"}),
              ElementsAre("/p/apple.jpg", "/p/Banana.jpg", "/p/Zebra.jpg"));
  EXPECT_THAT(sorted({"/p/A.jpg", "/p/a.jpg", "/p/B.jpg", "/p/b.jpg"}),
              ElementsAre("/p/a.jpg", "/p/A.jpg", "/p/b.jpg", "/p/B.jpg"));
}

TEST(FileNameOrder, LettersFollowTheLanguage) {
  const std::vector<std::string> paths = {"/p/zebra.jpg", "/p/\xC3\xA4rger.jpg", "/p/apfel.jpg"};
  EXPECT_THAT(sorted(paths, "de_DE"), ElementsAre("/p/apfel.jpg", "/p/\xC3\xA4rger.jpg", "/p/zebra.jpg"));
  EXPECT_THAT(sorted(paths, "sv_SE"), ElementsAre("/p/apfel.jpg", "/p/zebra.jpg", "/p/\xC3\xA4rger.jpg"));
}

TEST(FileNameOrder, FoldersStayTogether) {
  EXPECT_THAT(sorted({"/p/a b/1.jpg", "/p/a/9.jpg", "/p/a-c/1.jpg", "/p/a/1.jpg", "/p/A/5.jpg"}),
              ElementsAre("/p/a/1.jpg", "/p/a/9.jpg", "/p/A/5.jpg", "/p/a b/1.jpg", "/p/a-c/1.jpg"));
}

TEST(FileNameOrder, FilesAndFoldersAreListedTogether) {
  EXPECT_THAT(sorted({"/p/c/x.jpg", "/p/b.jpg", "/p/a/x.jpg"}),
              ElementsAre("/p/a/x.jpg", "/p/b.jpg", "/p/c/x.jpg"));
}

TEST(FileNameOrder, BytesDecideBetweenNamesThatAreEqual) {
  EXPECT_THAT(sorted({"/p/img_1.jpg", "/p/img_001.jpg"}), ElementsAre("/p/img_001.jpg", "/p/img_1.jpg"));
  EXPECT_THAT(sorted({"/p/caf\xC3\xA9.jpg", "/p/cafe\xCC\x81.jpg"}),
              ElementsAre("/p/cafe\xCC\x81.jpg", "/p/caf\xC3\xA9.jpg"));
}

TEST(FileNameOrder, SmallAndOddLists) {
  EXPECT_THAT(sorted({}), IsEmpty());
  EXPECT_THAT(sorted({"/one.jpg"}), ElementsAre("/one.jpg"));
  EXPECT_THAT(sorted({"b", "", "/", "a", ""}), ElementsAre("", "", "/", "a", "b"));
  EXPECT_THAT(sorted({"/b", "/a"}, "no such locale!"), ElementsAre("/a", "/b"));
  const std::string bad = "/\xFF.jpg";
  EXPECT_THAT(sorted({bad, "/a.jpg"}).size(), 2U);
}

TEST(FileNameOrder, VeryLongNamesKeepTheirOrder) {
  const std::string tail(100'000, 'm');
  EXPECT_THAT(sorted({"/p/" + tail + "2", "/p/" + tail + "1"}),
              ElementsAre("/p/" + tail + "1", "/p/" + tail + "2"));
}

TEST(FileNameOrder, DoesNotDependOnTheOrderBefore) {
  std::vector<std::string> paths;
  for (int folder = 0; folder < 12; ++folder) {
    for (int file = 0; file < 25; ++file) {
      paths.push_back("/p/Folder " + std::to_string(folder) + "/img_" + std::to_string(file) + ".jpg");
    }
  }
  const auto expected = paths;  // made in their order
  std::mt19937 random(7);
  for (int i = 0; i < 5; ++i) {
    std::shuffle(paths.begin(), paths.end(), random);
    EXPECT_EQ(sorted(paths), expected);
  }
}

}  // namespace
}  // namespace lumivane

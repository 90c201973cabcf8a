#include "collection/ImageList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST(ImageListTest, HoldsPathsInTheirOrder) {
  const ImageList list{"/p/b.jpg", "/p/a.jpg"};
  EXPECT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0], "/p/b.jpg");
  EXPECT_EQ(list[1], "/p/a.jpg");
  EXPECT_THAT(list, ElementsAre("/p/b.jpg", "/p/a.jpg"));
}

TEST(ImageListTest, HoldsAnyBytesThatAPathCanHave) {
  const std::vector<std::string> paths = {"/line\nbreak", "", "/\xE9", std::string("/nul\0byte", 9)};
  EXPECT_THAT(ImageList(paths), testing::ElementsAreArray(paths));
}

TEST(ImageListTest, WithoutPathsIsEmpty) {
  EXPECT_THAT(ImageList(), IsEmpty());
  EXPECT_THAT(ImageList(std::vector<std::string>{}), IsEmpty());
  EXPECT_EQ(ImageList(), ImageList(std::vector<std::string>{}));
  EXPECT_EQ(ImageList().find(""), std::nullopt);
}

TEST(ImageListTest, EveryLineOfATextIsAPath) {
  EXPECT_THAT(ImageList::ofLines("/a\n/b"), ElementsAre("/a", "/b"));
  EXPECT_THAT(ImageList::ofLines(""), ElementsAre(""));
  EXPECT_THAT(ImageList::ofLines("\n"), ElementsAre("", ""));
  EXPECT_THAT(ImageList::ofLines("/a\n\n/b\n"), ElementsAre("/a", "", "/b", ""));
}

TEST(ImageListTest, FindsTheFirstOfSeveral) {
  const ImageList list{"/a", "/b", "/b"};
  EXPECT_THAT(list.find("/b"), Optional(1U));
  EXPECT_EQ(list.find("/"), std::nullopt);
}

TEST(ImageListTest, ACopyKeepsWhatIsErasedHere) {
  ImageList list = ImageList::ofLines("/a\n/b\n/c");
  const ImageList copy = list;
  list.erase(1);
  EXPECT_THAT(list, ElementsAre("/a", "/c"));
  EXPECT_THAT(copy, ElementsAre("/a", "/b", "/c"));
  EXPECT_FALSE(list == copy);
  list.erase(0);
  list.erase(0);
  EXPECT_THAT(list, IsEmpty());
}

TEST(ImageListTest, OutlivesWhatItWasCopiedFrom) {
  ImageList list{"/a"};
  const ImageList copy = list;
  list = ImageList{"/other"};
  EXPECT_THAT(copy, ElementsAre("/a"));
}

TEST(ImageListTest, HandsOutItsBytesWhileTheyAreTheJoinedPaths) {
  EXPECT_THAT(ImageList().joinedText(), Optional(std::string_view()));
  EXPECT_THAT((ImageList{"/a", "", "/b"}).joinedText(), Optional(std::string_view("/a\n\n/b")));
  ImageList list = ImageList::ofLines("/a\n/b");
  EXPECT_THAT(list.joinedText(), Optional(std::string_view("/a\n/b")));
  list.erase(1);
  EXPECT_EQ(list.joinedText(), std::nullopt);
}

}  // namespace
}  // namespace lumivane

#include "platform/linux/index/IndexRow.h"

#include <gtest/gtest.h>

#include <climits>

namespace lumivane {
namespace {

constexpr const char* kFolder = "/home/me/Pictures";

TEST(IndexRow, IsAFileWithTheSizeOfItsPicture) {
  const auto file = checkedRow({"file:///home/me/Pictures/a/b%20%C3%BC%23.jpg", 1234, 640, 480}, kFolder);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->path, "/home/me/Pictures/a/b \xC3\xBC#.jpg");
  EXPECT_EQ(file->stamp.bytes, 1234U);
  EXPECT_EQ(file->size, (SizePx{640, 480}));
}

TEST(IndexRow, ASizeThatIsNotKnownOrAbsurdHasToBeMeasured) {
  constexpr std::int64_t kSides[] = {0, -1, 1'000'001, INT64_MAX, INT64_MIN, 4'294'967'296 + 640};
  for (const std::int64_t side : kSides) {
    for (const auto& [width, height] :
         {std::pair(side, std::int64_t{480}), std::pair(std::int64_t{640}, side)}) {
      const auto file = checkedRow({"file:///home/me/Pictures/a.jpg", 1, width, height}, kFolder);
      ASSERT_TRUE(file);
      EXPECT_FALSE(file->size) << width << "x" << height;
    }
  }
}

TEST(IndexRow, TheRootIsAFolderToo) {
  EXPECT_TRUE(checkedRow({"file:///a.jpg", 1, 1, 1}, ""));
  EXPECT_FALSE(checkedRow({"file:///", 1, 1, 1}, ""));
}

class HostileRow : public testing::TestWithParam<std::string> {};

TEST_P(HostileRow, IsLeftOut) {
  EXPECT_FALSE(checkedRow({GetParam(), 1000, 640, 480}, kFolder));
}
INSTANTIATE_TEST_SUITE_P(
    Rows, HostileRow,
    testing::Values("", "a.jpg", "/home/me/Pictures/a.jpg", "http://example.org/home/me/Pictures/a.jpg",
                    "file://elsewhere/home/me/Pictures/a.jpg", "urn:uuid:1", "file:///home/me/Pictures",
                    "file:///home/me/Pictures/", "file:///home/me/Pictures2/a.jpg", "file:///home/me/a.jpg",
                    "file:///home/me/Pictures/../a.jpg", "file:///home/me/Pictures/%2E%2E/a.jpg",
                    "file:///home/me/Pictures/a/../../b.jpg", "file:///home/me/Pictures/./a.jpg",
                    "file:///home/me/Pictures//a.jpg", "file:///home/me/Pictures/a.jpg/",
                    "file:///home/me/Pictures/.a.jpg", "file:///home/me/Pictures/.hidden/a.jpg",
                    "file:///home/me/Pictures/%FF.jpg", "file:///home/me/Pictures/a%0Ab.jpg",
                    "file:///home/me/Pictures/a%00.jpg", "file:///home/me/Pictures/a%2Fb.jpg",
                    "file:///home/me/Pictures/" + std::string(PATH_MAX, 'a') + ".jpg",
                    "file:///home/me/Pictures/" + std::string(100'000, 'a')));

TEST(IndexRow, AFileOfLessThanNothingIsLeftOut) {
  EXPECT_FALSE(checkedRow({"file:///home/me/Pictures/a.jpg", -1, 640, 480}, kFolder));
}

}  // namespace
}  // namespace lumivane

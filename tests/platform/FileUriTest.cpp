#include "platform/linux/FileUri.h"

namespace lumivane {
namespace {

TEST(FileUri, IsPlainAsciiWhateverThePathHolds) {
  EXPECT_EQ(fileUri("/pics/a.jpg"), "file:///pics/a.jpg");
  EXPECT_EQ(fileUri("/"), "file:///");
  EXPECT_EQ(fileUri("/K\xC3\xB6ln b#1%?.jpg"), "file:///K%C3%B6ln%20b%231%25%3F.jpg");
  EXPECT_EQ(fileUri("/two\nlines\x7F\x01"), "file:///two%0Alines%7F%01");
  EXPECT_EQ(fileUri("/\xFF\xFE\x80"), "file:///%FF%FE%80");
  EXPECT_EQ(fileUri("/a\\b[c];d\"e<f>"), "file:///a%5Cb%5Bc%5D%3Bd%22e%3Cf%3E");
}

TEST(FileUri, IsAbsentForWhatIsNoAbsolutePath) {
  EXPECT_EQ(fileUri(""), std::nullopt);
  EXPECT_EQ(fileUri("a.jpg"), std::nullopt);
  EXPECT_EQ(fileUri("file:///a.jpg"), std::nullopt);
  EXPECT_EQ(fileUri(std::string("/a\0b", 4)), std::nullopt);
}

TEST(PathOfFileUri, IsThePathThatTheAddressWasMadeOf) {
  for (const std::string path :
       {"/pics/a.jpg", "/", "/K\xC3\xB6ln b#1%?.jpg", "/two\nlines\x7F\x01", "/\xFF\xFE\x80"}) {
    EXPECT_EQ(pathOfFileUri(fileUri(path).value()), path);
  }
}

TEST(PathOfFileUri, IsAbsentForOtherAddresses) {
  for (const std::string uri : {"", "/a.jpg", "http://localhost/a.jpg", "file://another.host/a.jpg",
                                "file:///a%00b", "file:///a%2Fb", "file:///a%", "trash:///a.jpg"}) {
    EXPECT_EQ(pathOfFileUri(uri), std::nullopt) << uri;
  }
  EXPECT_EQ(pathOfFileUri(std::string("file:///a\0b", 11)), std::nullopt);
}

}  // namespace
}  // namespace lumivane

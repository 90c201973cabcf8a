#include "collection/PictureTypes.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

TEST(PictureTypes, KnowsCommonFormatsInAnyCase) {
  for (const char* const name :
       {"a.jpg", "a.JPG", "a.JpEg", "a.jpe", "a.jfif", "a.png", "a.gif", "a.tif", "a.TIFF", "a.webp",
        "a.heic", "a.HEIF", "a.avif", "a.jxl", "a.jp2", "a.j2k", "a.jpx", "a.bmp", "a.dib"}) {
    EXPECT_TRUE(isPictureFileName(name)) << name;
  }
}

TEST(PictureTypes, KnowsRawFormats) {
  for (const char* const name : {"a.cr2", "a.CR3", "a.crw", "a.nef", "a.nrw", "a.arw", "a.srf", "a.sr2",
                                 "a.DNG", "a.raf", "a.rw2", "a.orf", "a.pef", "a.srw", "a.x3f", "a.3fr",
                                 "a.erf", "a.kdc", "a.mrw", "a.mef", "a.mos", "a.iiq", "a.rwl"}) {
    EXPECT_TRUE(isPictureFileName(name)) << name;
  }
}

TEST(PictureTypes, LeavesDocumentsAndDrawingsOut) {
  for (const char* const name :
       {"a.pdf", "a.svg", "a.eps", "a.txt", "a.mov", "a.mp4", "a.exe", "a.psd.zip"}) {
    EXPECT_FALSE(isPictureFileName(name)) << name;
  }
}

TEST(PictureTypes, TakesWhatFollowsTheLastDot) {
  EXPECT_TRUE(isPictureFileName("dots..in...name.jpg"));
  EXPECT_TRUE(isPictureFileName("archive.zip.jpg"));
  EXPECT_FALSE(isPictureFileName("a.jpg.part"));
  EXPECT_FALSE(isPictureFileName("a.jpg "));
  EXPECT_FALSE(isPictureFileName("a.jpg."));
}

TEST(PictureTypes, NeedsAnExtension) {
  for (const char* const name : {"", ".", "..", "jpg", ".jpg", "noext", "a.", "\xE2\x80\xAEgpj.exe"}) {
    EXPECT_FALSE(isPictureFileName(name)) << name;
  }
}

TEST(PictureTypes, IsNotFooledByLongOrBinaryExtensions) {
  using namespace std::string_view_literals;
  EXPECT_FALSE(isPictureFileName("a.xxxxxjpg"sv));
  EXPECT_FALSE(isPictureFileName("a.\0jpg"sv));
  EXPECT_FALSE(isPictureFileName("a.jpgjpgjpgjpgjpg"sv));
}

}  // namespace
}  // namespace lumivane

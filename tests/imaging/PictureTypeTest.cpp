#include "imaging/decode/PictureType.h"

#include <gtest/gtest.h>

#include <string>

#include "imaging/decode/StoredText.h"

namespace lumivane {
namespace {

using namespace std::string_literals;

PictureType typeOf(const std::string& start) {
  return pictureTypeOf(std::as_bytes(std::span(start)));
}

TEST(PictureType, is_told_by_the_first_bytes) {
  EXPECT_EQ(typeOf("\xFF\xD8\xFF\xE0"s), PictureType::Jpeg);
  EXPECT_EQ(typeOf("\x89PNG\r\n\x1A\n"s), PictureType::Png);
  EXPECT_EQ(typeOf("GIF87a"s), PictureType::Gif);
  EXPECT_EQ(typeOf("GIF89a"s), PictureType::Gif);
  EXPECT_EQ(typeOf("II*\0"s), PictureType::Tiff);
  EXPECT_EQ(typeOf("MM\0*"s), PictureType::Tiff);
  EXPECT_EQ(typeOf("II+\0"s), PictureType::Tiff);
  EXPECT_EQ(typeOf("RIFF\x10\0\0\0WEBPVP8X"s), PictureType::WebP);
  EXPECT_EQ(typeOf("\xFF\x0A\x00"s), PictureType::Jxl);
  EXPECT_EQ(typeOf("\0\0\0\x0CJXL \r\n\x87\n"s), PictureType::Jxl);
  EXPECT_EQ(typeOf("\0\0\0\x0CjP  \r\n\x87\n"s), PictureType::Jp2);
  EXPECT_EQ(typeOf("\xFF\x4F\xFF\x51"s), PictureType::Jp2);
  EXPECT_EQ(typeOf("FUJIFILMCCD-RAW 0201"s), PictureType::CameraRaw);
  EXPECT_EQ(typeOf("BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x02\0\0\0\x02\0\0\0"s), PictureType::Bmp);
}

TEST(PictureType, brands_tell_pictures_from_films) {
  EXPECT_EQ(typeOf("\0\0\0\x18"
                   "ftypheic\0\0\0\0mif1heic"s),
            PictureType::Heif);
  EXPECT_EQ(typeOf("\0\0\0\x18"
                   "ftypavif\0\0\0\0mif1miaf"s),
            PictureType::Heif);
  EXPECT_EQ(typeOf("\0\0\0\x18"
                   "ftypXYZ \0\0\0\0junkmif1"s),
            PictureType::Heif);
  EXPECT_EQ(typeOf("\0\0\0\x18"
                   "ftypcrx \0\0\0\x01"
                   "crx isom"s),
            PictureType::CameraRaw);
  EXPECT_EQ(typeOf("\0\0\0\x18"
                   "ftypisom\0\0\0\0isommp42"s),
            PictureType::Unknown);
  EXPECT_EQ(typeOf("\0\0\0\x14"
                   "ftypqt  \0\0\0\0qt  heic"s),
            PictureType::Unknown);  // behind the box's end
}

TEST(PictureType, version_number_is_not_taken_for_a_brand) {
  EXPECT_EQ(typeOf("\0\0\0\x18"
                   "ftypisomheicisommp42"s),
            PictureType::Unknown);
}

TEST(PictureType, what_is_not_shown_is_unknown) {
  for (const auto& start :
       {""s, "\xFF"s, "\xFF\xD8"s, "%PDF-1.7"s, "<?xml version"s, "<svg"s, "%!PS"s, "RIFF\0\0\0\0WAVE"s,
        "RIFF"s, "BM and words that follow it"s, "P6\n1 1\n255\n"s, "GIF88a"s, "8BPS\0\x01"s}) {
    EXPECT_EQ(typeOf(start), PictureType::Unknown) << start;
  }
}

TEST(StoredText, utf8_stays_and_other_bytes_are_latin1) {
  EXPECT_EQ(storedText("plain"), "plain");
  EXPECT_EQ(storedText("Z\xC3\xBCrich"), "Zürich");
  EXPECT_EQ(storedText("Z\xFCrich"), "Zürich");
  EXPECT_EQ(storedText("\xC3\xBC and \xFC"), "Ã¼ and ü");
  EXPECT_EQ(storedText(""), "");
}

TEST(StoredText, ends_at_the_first_nul) {
  EXPECT_EQ(storedText("S\0"s), "S");
  EXPECT_EQ(storedText("text\0more"s), "text");
  EXPECT_EQ(storedText("\0"s), "");
}

}  // namespace
}  // namespace lumivane

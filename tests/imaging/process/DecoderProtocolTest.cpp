#include "imaging/process/DecoderProtocol.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "imaging/process/PropertyWire.h"
#include "platform/ChildProgram.h"

namespace lumivane {
namespace {

PropertyDictionary fullProperties() {
  PropertyDictionary properties;
  properties.pixelWidth = 6000;
  properties.pixelHeight = 4000;
  properties.orientation = 9;
  properties.gps = GpsDictionary{48.1, 11.5, "N", "E"};
  properties.iptc = IptcDictionary{std::vector<std::string>{"lake", "Zürich", ""},
                                   std::vector<std::string>{"Ada"}, "a caption", "an artwork", "a name"};
  properties.tiffImageDescription = "described";
  properties.exifDateTimeOriginal = "2024:05:06 07:08:09";
  return properties;
}

std::vector<DecoderAnswer> everyAnswer() {
  return {HelloAnswer{kDecoderProtocol, true, false},
          OpenAnswer{7, true, ImageSourceStatus::Complete, fullProperties()},
          OpenAnswer{8, false, ImageSourceStatus::UnexpectedEnd, std::nullopt},
          MemoryWish{9, 128U << 20},
          DecodeAnswer{10, true, {6000, 4000}, 6, true},
          DecodeAnswer{10, true, {6000, 4000}, 6, true, true, Chroma::Half},
          DecodeAnswer{11, false, {}, 1, false},
          MeasureAnswer{12, {SizePx{1, 2}, std::nullopt, SizePx{0, 0}}}};
}

std::vector<DecoderRequest> everyRequest() {
  return {OpenRequest{1, "/pictures/a b.jpg"}, DecodeRequest{2, 8192}, MemoryLoan{3, 4, 4096, {1, 2}},
          MeasureRequest{5, {"/a", "/b"}}, CloseRequest{}};
}

// What is said of a message is that writing it again gives the same bytes.
TEST(DecoderProtocolTest, what_is_written_reads_back) {
  for (const DecoderAnswer& answer : everyAnswer()) {
    const auto read = answerIn(encoded(answer));
    ASSERT_TRUE(read) << answer.index();
    EXPECT_EQ(read->index(), answer.index());
    EXPECT_EQ(encoded(*read), encoded(answer));
  }
  for (const DecoderRequest& request : everyRequest()) {
    const auto read = requestIn(encoded(request));
    ASSERT_TRUE(read) << request.index();
    EXPECT_EQ(encoded(*read), encoded(request));
  }
}

TEST(DecoderProtocolTest, every_property_arrives) {
  const auto read = answerIn(encoded(DecoderAnswer(everyAnswer()[1])));
  ASSERT_TRUE(read);
  const auto& properties = std::get<OpenAnswer>(*read).properties;
  ASSERT_TRUE(properties && properties->gps && properties->iptc);
  EXPECT_EQ(properties->pixelWidth, 6000);
  EXPECT_EQ(properties->orientation, 9);
  EXPECT_EQ(properties->gps->latitude, 48.1);
  EXPECT_EQ(properties->gps->longitudeRef, "E");
  EXPECT_EQ(properties->iptc->keywords, (std::vector<std::string>{"lake", "Zürich", ""}));
  EXPECT_EQ(properties->iptc->personInImage, std::vector<std::string>{"Ada"});
  EXPECT_EQ(properties->iptc->objectName, "a name");
  EXPECT_EQ(properties->tiffImageDescription, "described");
  EXPECT_EQ(properties->exifDateTimeOriginal, "2024:05:06 07:08:09");
}

TEST(DecoderProtocolTest, no_part_of_a_message_and_nothing_behind_it_is_a_message) {
  for (const DecoderAnswer& answer : everyAnswer()) {
    std::vector<std::byte> message = encoded(answer);
    for (std::size_t length = 0; length < message.size(); ++length)
      EXPECT_FALSE(answerIn(std::span(message).first(length))) << answer.index() << " " << length;
    message.push_back(std::byte{0});
    EXPECT_FALSE(answerIn(message)) << answer.index();
  }
}

// Whatever still reads is within the limits that its user relies on.
void expectWithinLimits(const DecoderAnswer& answer) {
  if (const auto* decoded = std::get_if<DecodeAnswer>(&answer); decoded != nullptr && decoded->decoded) {
    EXPECT_GE(decoded->size.width, 1);
    EXPECT_GE(decoded->size.height, 1);
    EXPECT_GE(decoded->orientation, 1);
    EXPECT_LE(decoded->orientation, 8);
  }
  if (const auto* measured = std::get_if<MeasureAnswer>(&answer)) {
    EXPECT_LE(measured->sizes.size(), kMostPathsAtOnce);
  }
  const auto* opened = std::get_if<OpenAnswer>(&answer);
  if (opened == nullptr || !opened->properties) return;
  EXPECT_GE(opened->properties->pixelWidth.value_or(0), 0);
  const GpsDictionary gps = opened->properties->gps.value_or(GpsDictionary{});
  EXPECT_LE(std::abs(gps.latitude.value_or(0)), 90);
  const IptcDictionary iptc = opened->properties->iptc.value_or(IptcDictionary{});
  EXPECT_LE(iptc.keywords.value_or(std::vector<std::string>()).size(), kMostPropertyItems);
}

TEST(DecoderProtocolTest, changed_bits_are_survived) {
  for (const DecoderAnswer& answer : everyAnswer()) {
    const std::vector<std::byte> message = encoded(answer);
    for (std::size_t bit = 0; bit < message.size() * 8; ++bit) {
      std::vector<std::byte> changed = message;
      changed[bit / 8] ^= std::byte{1} << (bit % 8);
      if (const auto read = answerIn(changed)) expectWithinLimits(*read);
    }
  }
}

TEST(DecoderProtocolTest, random_bytes_are_survived) {
  std::mt19937 random(20);  // NOLINT(cert-msc51-cpp): the same bytes every time
  int read = 0;
  for (int i = 0; i < 200'000; ++i) {
    std::vector<std::byte> bytes(random() % 64);
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() % (i % 2 == 0 ? 256 : 4));
    if (const auto answer = answerIn(bytes)) {
      ++read;
      expectWithinLimits(*answer);
    }
    (void)requestIn(bytes);
  }
  EXPECT_GT(read, 0);  // or nothing was tested behind the first byte
}

bool readsWith(const PropertyDictionary& properties) {
  return answerIn(encoded(DecoderAnswer(OpenAnswer{1, true, ImageSourceStatus::Complete, properties})))
      .has_value();
}

TEST(DecoderProtocolTest, absurd_properties_are_refused) {
  EXPECT_TRUE(readsWith({}));
  EXPECT_TRUE(readsWith(fullProperties()));
  PropertyDictionary properties = fullProperties();
  properties.pixelWidth = -1;
  EXPECT_FALSE(readsWith(properties));
  for (const double degrees : {91.0, -90.5, std::numeric_limits<double>::infinity(), std::nan("")}) {
    properties = fullProperties();
    properties.gps->latitude = degrees;
    EXPECT_FALSE(readsWith(properties)) << degrees;
  }
  properties = fullProperties();
  properties.gps->longitude = -180.5;
  EXPECT_FALSE(readsWith(properties));
  properties = fullProperties();
  properties.tiffImageDescription = "not UTF-8: \xC3";
  EXPECT_FALSE(readsWith(properties));
  properties = fullProperties();
  properties.iptc->keywords->push_back("\xFF");
  EXPECT_FALSE(readsWith(properties));
  properties = fullProperties();
  properties.tiffImageDescription = std::string(kLongestPropertyText + 1, 'a');
  EXPECT_FALSE(readsWith(properties));
}

TEST(DecoderProtocolTest, a_picture_with_too_much_to_say_loses_its_last_keywords) {
  PropertyDictionary properties = fullProperties();
  properties.tiffImageDescription = std::string(kLongestPropertyText, 'a');
  properties.iptc->keywords = std::vector<std::string>(kMostPropertyItems + 5, std::string(20'000, 'k'));
  const auto message = encoded(DecoderAnswer(OpenAnswer{1, true, ImageSourceStatus::Complete, properties}));
  EXPECT_LE(message.size(), kLongestMessage);
  const auto read = answerIn(message);
  ASSERT_TRUE(read);
  const auto& arrived = *std::get<OpenAnswer>(*read).properties;
  EXPECT_EQ(arrived.tiffImageDescription, properties.tiffImageDescription);
  EXPECT_GT(arrived.iptc->keywords->size(), 30U);
  EXPECT_LT(arrived.iptc->keywords->size(), 60U);
}

TEST(DecoderProtocolTest, absurd_pictures_are_refused) {
  const auto reads = [](DecodeAnswer answer) { return answerIn(encoded(DecoderAnswer(answer))).has_value(); };
  EXPECT_TRUE(reads({1, true, {1, 1}, 8, true}));
  for (const SizePx size : {SizePx{0, 5}, SizePx{5, 0}, SizePx{-1, 5}, SizePx{5, -1}})
    EXPECT_FALSE(reads({1, true, size, 1, true})) << size.width << " " << size.height;
  EXPECT_FALSE(reads({1, true, {5, 5}, 0, true}));
  EXPECT_FALSE(reads({1, true, {5, 5}, 9, true}));
  EXPECT_TRUE(reads({1, true, {64, 64}, 1, true, true, Chroma::None}));
  EXPECT_TRUE(reads({1, true, {64, 64}, 1, true, true, kLastChroma}));
  EXPECT_FALSE(reads({1, true, {64, 64}, 1, true, true, static_cast<Chroma>(5)}));
  EXPECT_FALSE(reads({1, true, {63, 64}, 1, true, true, Chroma::Half}));
  EXPECT_FALSE(reads({1, true, {64, 64}, 1, false, true, Chroma::Half})) << "planes know no transparency";
}

TEST(DecoderProtocolTest, pictures_whose_bytes_could_not_be_counted_are_refused) {
  const auto reads = [](SizePx size, bool inPlanes) {
    return answerIn(encoded(DecoderAnswer(DecodeAnswer{1, true, size, 1, true, inPlanes, Chroma::Half})))
        .has_value();
  };
  EXPECT_TRUE(reads({65536, 65536}, false));
  EXPECT_TRUE(reads({65536, 65536}, true));
  EXPECT_FALSE(reads({65537, 64}, false));
  EXPECT_FALSE(reads({64, 65537}, true));
  // Found by fuzzing: four bytes for each of these pixels are more than 64 bits can say.
  EXPECT_FALSE(reads({0x68172F00, 0x7E000400}, true));
}

TEST(DecoderProtocolTest, statuses_are_those_that_a_file_can_have) {
  const auto reads = [](int status) {
    return answerIn(encoded(DecoderAnswer(OpenAnswer{1, true, static_cast<ImageSourceStatus>(status), {}})))
        .has_value();
  };
  for (const int status : {0, -1, -3, -4, -5}) EXPECT_TRUE(reads(status)) << status;
  for (const int status : {1, -2, -6, 1000}) EXPECT_FALSE(reads(status)) << status;
}

}  // namespace
}  // namespace lumivane

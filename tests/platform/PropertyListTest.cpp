#include "platform/PropertyList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <locale.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace lumivane {
namespace {

using std::chrono::seconds;

std::string xml(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">" +
         body + "</plist>\n";
}

PropertyList roundTrip(const PropertyList& list) {
  const Result<std::string> written = writePropertyListXml(list);
  if (!written) return std::string("not written: " + written.error());
  const Result<PropertyList> read = parsePropertyList(written.value());
  if (!read) return std::string("not read: " + read.error());
  return read.value();
}

// A dictionary {"n": <object>} in the binary form; the object's bytes are given.
std::string binaryDictionary(const std::string& object) {
  std::string bytes = "bplist00";
  const auto put = [&](std::initializer_list<int> values) {
    for (const int value : values) bytes += static_cast<char>(value);
  };
  put({0xD1, 1, 2, 0x51, 'n'});
  bytes += object;
  const int table = static_cast<int>(bytes.size());
  put({8, 11, 13});
  put({0, 0, 0, 0, 0, 0, 1, 1});
  put({0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, table});
  return bytes;
}

// Lists in the binary form, each holding `width` references to the next; the last one is empty.
std::string binaryNest(int levels, int width, bool lastPointsToFirst = false) {
  std::string bytes = "bplist00";
  std::string table;
  for (int level = 0; level < levels; ++level) {
    const bool last = level == levels - 1;
    const int references = last && !lastPointsToFirst ? 0 : width;
    table += static_cast<char>(bytes.size() >> 8);
    table += static_cast<char>(bytes.size());
    bytes += static_cast<char>(0xA0 | references);
    bytes += std::string(static_cast<std::size_t>(references), static_cast<char>(last ? 0 : level + 1));
  }
  const std::size_t start = bytes.size();
  bytes += table;
  bytes += std::string{0, 0, 0, 0, 0, 0, 2, 1, 0, 0, 0, 0, 0, 0, 0, static_cast<char>(levels)};
  bytes += std::string(14, '\0');
  bytes += static_cast<char>(start >> 8);
  bytes += static_cast<char>(start);
  return bytes;
}

// A list that refers to all others, the innermost first; each of those refers to the next. So every one is met
// directly below the first, yet the last lies `lists` - 1 deep.
std::string binaryChain(int lists) {
  std::string bytes = "bplist00";
  std::string table;
  const auto begin = [&] {
    table += static_cast<char>(bytes.size() >> 8);
    table += static_cast<char>(bytes.size());
  };
  begin();
  bytes += std::string{static_cast<char>(0xAF), 0x10, static_cast<char>(lists - 1)};
  for (int i = lists - 1; i >= 1; --i) bytes += static_cast<char>(i);
  for (int i = 1; i < lists; ++i) {
    begin();
    bytes += static_cast<char>(i == lists - 1 ? 0xA0 : 0xA1);
    if (i < lists - 1) bytes += static_cast<char>(i + 1);
  }
  const std::size_t start = bytes.size();
  bytes += table + std::string{0, 0, 0, 0, 0, 0, 2, 1, 0, 0, 0, 0, 0, 0, 0, static_cast<char>(lists)};
  bytes += std::string(14, '\0');
  bytes += static_cast<char>(start >> 8);
  bytes += static_cast<char>(start);
  return bytes;
}

TEST(PropertyList, EveryKindOfValueSurvives) {
  PropertyListDictionary dictionary;
  dictionary.emplace("truth", true);
  dictionary.emplace("lie", false);
  dictionary.emplace("number", std::int64_t{60});
  dictionary.emplace("negative", std::int64_t{-5});
  dictionary.emplace("smallest", std::numeric_limits<std::int64_t>::min());
  dictionary.emplace("largest", std::numeric_limits<std::int64_t>::max());
  dictionary.emplace("real", 1.3);
  dictionary.emplace("text", std::string("Gr\xC3\xBC\xC3\x9F"
                                         "e & <x>\n\"quoted\" \xF0\x9F\x8F\x94"));
  dictionary.emplace("empty text", std::string());
  dictionary.emplace("data", PropertyListData{std::string("\0\x01\xFF"
                                                          "abc",
                                                          6)});
  dictionary.emplace("empty data", PropertyListData{});
  dictionary.emplace("date", WallTime(seconds(1700000000)));
  dictionary.emplace("array", PropertyListArray{std::string("x"), std::int64_t{1}, PropertyListArray{}});
  dictionary.emplace("a <key> & more", PropertyListDictionary{});
  EXPECT_EQ(roundTrip(dictionary), PropertyList(dictionary));
}

TEST(PropertyList, RealsKeepEveryBit) {
  for (const double value : {0.1, static_cast<double>(1.3F), 1e-300, 1.7976931348623157e308, -0.0, 5e-324}) {
    const PropertyList read = roundTrip(value);
    ASSERT_NE(read.as<double>(), nullptr);
    EXPECT_EQ(*read.as<double>(), value);
  }
  ASSERT_NE(roundTrip(std::nan("")).as<double>(), nullptr);
  EXPECT_TRUE(std::isnan(*roundTrip(std::nan("")).as<double>()));
  EXPECT_EQ(*roundTrip(HUGE_VAL).as<double>(), HUGE_VAL);
  EXPECT_EQ(*roundTrip(-HUGE_VAL).as<double>(), -HUGE_VAL);
}

TEST(PropertyList, DatesAreWholeSeconds) {
  const WallTime time = WallTime(seconds(1700000000)) + std::chrono::milliseconds(700);
  EXPECT_EQ(roundTrip(time), PropertyList(WallTime(seconds(1700000000))));
  EXPECT_EQ(roundTrip(WallTime(seconds(-1))), PropertyList(WallTime(seconds(-1))));
  EXPECT_FALSE(writePropertyListXml(WallTime::max()).ok());
}

TEST(PropertyList, IntegersBeyondTheRangeSaturate) {
  const Result<PropertyList> read = parsePropertyList(xml("<integer>18446744073709551611</integer>"));
  ASSERT_TRUE(read.ok());
  EXPECT_EQ(read.value(), PropertyList(std::numeric_limits<std::int64_t>::max()));
}

TEST(PropertyList, ReadsTheBinaryForm) {
  const Result<PropertyList> small = parsePropertyList(binaryDictionary("\x10\x05"));
  ASSERT_TRUE(small.ok()) << small.error();
  EXPECT_EQ(small.value(), PropertyList(PropertyListDictionary{{"n", std::int64_t{5}}}));
  const Result<PropertyList> negative =
      parsePropertyList(binaryDictionary("\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFB"));
  ASSERT_TRUE(negative.ok()) << negative.error();
  EXPECT_EQ(negative.value(), PropertyList(PropertyListDictionary{{"n", std::int64_t{-5}}}));
  const Result<PropertyList> text = parsePropertyList(binaryDictionary(std::string("\x62\x00\xE9\x00x", 5)));
  ASSERT_TRUE(text.ok()) << text.error();
  EXPECT_EQ(text.value(), PropertyList(PropertyListDictionary{{"n", std::string("\xC3\xA9x")}}));
}

TEST(PropertyList, ReadsWhatOtherProgramsWrite) {
  EXPECT_TRUE(
      parsePropertyList(xml("<dict>\n\t<!-- <array><array> -->\n<key>a</key>\n<true/>\n</dict>")).ok());
  EXPECT_TRUE(parsePropertyList(xml("<array><string>x</string><integer> 7 </integer></array>")).ok());
}

TEST(PropertyList, DecimalCommasOfTheDesktopDoNotMatter) {
  const char* commaLocale = nullptr;
  for (const char* name : {"de_DE.utf8", "de_DE.UTF-8", "fr_FR.utf8", "de_DE"}) {
    if (setlocale(LC_NUMERIC, name) != nullptr) commaLocale = name;
  }
  if (commaLocale == nullptr) GTEST_SKIP() << "no locale with a decimal comma on this machine";
  const PropertyList read = roundTrip(1.5);
  setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(read, PropertyList(1.5));
}

TEST(PropertyList, RefusesWhatIsNoPropertyList) {
  for (const std::string& bytes :
       {std::string(), std::string("garbage"), std::string("<plist>"), std::string("bplist00"),
        std::string("bplist99") + std::string(40, '\0'), std::string("\0\0\0", 3), xml("<dict><key>a</key>"),
        xml("<bogus/>"), xml("<integer>abc</integer>"), xml("<integer></integer>"), xml("<real>1,3</real>"),
        xml("<date>yesterday</date>"), xml("<string>\xE9</string>"), xml("<string>&bogus;</string>"),
        std::string("\xFF\xFE<\0p\0", 6)}) {
    const Result<PropertyList> read = parsePropertyList(bytes);
    if (read.ok()) {
      ADD_FAILURE() << "accepted: " << bytes;
    } else {
      EXPECT_THAT(read.error(), testing::StartsWith("not a property list: "));
    }
  }
}

TEST(PropertyList, RefusesDeclarationsAndAttributes) {
  EXPECT_FALSE(
      parsePropertyList("<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>").ok());
  EXPECT_FALSE(parsePropertyList(xml("<array a=\"></array>\">")).ok());
}

TEST(PropertyList, NestingHasALimit) {
  const auto nested = [](int levels) {
    std::string body;
    for (int i = 0; i < levels; ++i) body += "<array>";
    for (int i = 0; i < levels; ++i) body += "</array>";
    return xml(body);
  };
  EXPECT_TRUE(parsePropertyList(nested(64)).ok());
  EXPECT_FALSE(parsePropertyList(nested(65)).ok());
  EXPECT_FALSE(parsePropertyList(nested(1000000)).ok());
}

TEST(PropertyList, CommentsCannotHideNesting) {
  std::string body;
  for (int i = 0; i < 100000; ++i) body += "<array><!--</array>-->";
  EXPECT_FALSE(parsePropertyList(xml(body)).ok());
}

TEST(PropertyList, NestingHasALimitWhenWritingToo) {
  PropertyList list{PropertyListArray{}};
  for (int level = 1; level < 64; ++level) list = PropertyListArray{list};
  EXPECT_EQ(roundTrip(list), list);
  EXPECT_FALSE(writePropertyListXml(PropertyListArray{list}).ok());
}

TEST(PropertyList, TextThatXmlCannotHoldIsNotWritten) {
  EXPECT_FALSE(writePropertyListXml(std::string("a\0b", 3)).ok());
  EXPECT_FALSE(writePropertyListXml(std::string("\x1B")).ok());
  EXPECT_FALSE(writePropertyListXml(std::string("latin1-\xE9")).ok());
  EXPECT_FALSE(writePropertyListXml(PropertyListDictionary{{"\xFF", true}}).ok());
}

TEST(PropertyList, BinaryReferencesMayNotRunInCircles) {
  EXPECT_TRUE(parsePropertyList(binaryNest(3, 1)).ok());
  EXPECT_FALSE(parsePropertyList(binaryNest(3, 1, true)).ok());
}

TEST(PropertyList, BinaryNestingHasALimit) {
  EXPECT_TRUE(parsePropertyList(binaryNest(64, 1)).ok());
  EXPECT_FALSE(parsePropertyList(binaryNest(65, 1)).ok());
}

TEST(PropertyList, BinaryReferencesMayNotExplode) {
  // 14 references in each of 40 lists: 14^39 empty lists.
  EXPECT_FALSE(parsePropertyList(binaryNest(40, 14)).ok());
}

TEST(PropertyList, SharedObjectsCountAtTheirDeepestPlace) {
  EXPECT_TRUE(parsePropertyList(binaryChain(60)).ok());
  EXPECT_FALSE(parsePropertyList(binaryChain(100)).ok());
}

// The library ends the program at the first of them.
TEST(PropertyList, BinaryTextsMayNotHoldZeros) {
  EXPECT_TRUE(
      parsePropertyList(binaryDictionary(std::string("\x53"
                                                     "abc"))));
  EXPECT_FALSE(
      parsePropertyList(binaryDictionary(std::string("\x53"
                                                     "a\0c",
                                                     4))));
  EXPECT_TRUE(parsePropertyList(binaryDictionary(std::string("\x62\0a\0b", 5))));
  EXPECT_FALSE(parsePropertyList(binaryDictionary(std::string("\x62\0a\0\0", 5))));
  std::string key =
      binaryDictionary(std::string("\x53"
                                   "abc"));
  key[key.find("Qn") + 1] = '\0';
  EXPECT_FALSE(parsePropertyList(key));
}

TEST(PropertyList, TextsThatXmlCannotHoldAreNotReadEither) {
  EXPECT_FALSE(
      parsePropertyList(binaryDictionary(std::string("\x53"
                                                     "a\x01"
                                                     "c"))));
  EXPECT_TRUE(
      parsePropertyList(binaryDictionary(std::string("\x53"
                                                     "a\tc"))));
}

// They could not be written again, and the file with them would be left as it is for ever, or lose them.
TEST(PropertyList, DatesThatCannotBeKeptAreRefused) {
  EXPECT_TRUE(parsePropertyList(xml("<date>2069-01-01T00:00:00Z</date>")));
  EXPECT_FALSE(parsePropertyList(xml("<date>5032-05-06T07:08:09Z</date>")));
}

TEST(PropertyList, DamagedBytesNeverCrash) {
  PropertyListDictionary dictionary;
  dictionary.emplace("DurationPerImage", std::int64_t{60});
  dictionary.emplace("Patterns", std::string(".*/thumb.*"));
  dictionary.emplace("List", PropertyListArray{PropertyListData{"abc"}, 1.5});
  const std::vector<std::string> seeds{writePropertyListXml(dictionary).value(), binaryDictionary("\x10\x05"),
                                       binaryNest(6, 3)};
  std::uint32_t state = 12345;
  const auto next = [&] { return state = state * 1664525U + 1013904223U, state >> 8; };
  int parsed = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string bytes = seeds[next() % seeds.size()];
    for (std::uint32_t change = next() % 4 + 1; change > 0; --change) {
      bytes[next() % bytes.size()] = static_cast<char>(next());
    }
    if (next() % 8 == 0) bytes.resize(next() % bytes.size());
    if (parsePropertyList(bytes).ok()) ++parsed;
  }
  EXPECT_GT(parsed, 0);
  EXPECT_LT(parsed, 20000);
}

}  // namespace
}  // namespace lumivane

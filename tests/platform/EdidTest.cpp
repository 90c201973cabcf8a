#include "platform/Edid.h"

#include <gtest/gtest.h>

#include "tests/support/EdidBytes.h"

namespace lumivane {
namespace {

TEST(Edid, ReadsWhatAMonitorSays) {
  const std::optional<Edid> edid = parseEdid(edidBytes({0x10AC, 0x41C8, 0x4C303233, "DELL U2720Q\n "}));
  ASSERT_TRUE(edid);
  EXPECT_EQ(edid->vendor, 0x10AC);  // DEL
  EXPECT_EQ(edid->product, 0x41C8);
  EXPECT_EQ(edid->serial, 0x4C303233U);
  EXPECT_EQ(edid->name, "DELL U2720Q");
}

TEST(Edid, ANameMayFillItsField) {
  EXPECT_EQ(parseEdid(edidBytes({1, 1, 1, "ABCDEFGHIJKLM"}))->name, "ABCDEFGHIJKLM");
}

TEST(Edid, PaddingIsNoPartOfTheName) {
  EXPECT_EQ(parseEdid(edidBytes({1, 1, 1, "AB           "}))->name, "AB");
  EXPECT_EQ(parseEdid(edidBytes({1, 1, 1, std::string("AB\0\0\0", 5)}))->name, "AB");
}

TEST(Edid, WithoutANameThereIsNone) {
  EXPECT_FALSE(parseEdid(edidBytes({1, 1, 1, {}}))->name);
  EXPECT_FALSE(parseEdid(edidBytes({1, 1, 1, "\n            "}))->name);
  EXPECT_FALSE(parseEdid(edidBytes({1, 1, 1, "             "}))->name);
}

TEST(Edid, HostileNamesAreMadePlain) {
  EXPECT_EQ(parseEdid(edidBytes({1, 1, 1, "\x1B[31m\xFF/.."}))->name, "?[31m?/..");
}

TEST(Edid, ExtensionBlocksDoNotMatter) {
  EXPECT_EQ(parseEdid(edidBytes({1, 1, 1, "TV"}) + std::string(128, '\xEE'))->name, "TV");
}

TEST(Edid, RefusesWhatIsNoIdentification) {
  EXPECT_FALSE(parseEdid(""));
  EXPECT_FALSE(parseEdid(std::string(128, '\0')));
  EXPECT_FALSE(parseEdid(std::string(256, '\xFF')));
  const std::string sound = edidBytes({1, 2, 3, "TV"});
  EXPECT_FALSE(parseEdid(sound.substr(0, 127)));
  std::string damaged = sound;
  damaged[60] = static_cast<char>(damaged[60] + 1);
  EXPECT_FALSE(parseEdid(damaged));
  damaged = sound;
  damaged[0] = 1, damaged[127] = static_cast<char>(damaged[127] - 1);
  EXPECT_FALSE(parseEdid(damaged));
}

TEST(Edid, AnyBytesWithTheRightSumAreReadSafely) {
  std::uint32_t state = 99;
  for (int round = 0; round < 20000; ++round) {
    std::string bytes = edidBytes({1, 2, 3, "TV"});
    for (std::size_t i = 8; i < 127; ++i) {
      state = state * 1664525U + 1013904223U;
      if ((state >> 30) == 0) bytes[i] = static_cast<char>(state >> 20);
    }
    setEdidSum(bytes);
    const std::optional<Edid> edid = parseEdid(bytes);
    ASSERT_TRUE(edid);
    if (!edid->name) continue;
    EXPECT_FALSE(edid->name->empty());
    for (const char c : *edid->name) EXPECT_TRUE(c >= ' ' && c <= '~');
  }
}

}  // namespace
}  // namespace lumivane

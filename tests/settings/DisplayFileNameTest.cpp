#include "settings/DisplayFileName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

TEST(DisplayFileName, OrdinaryNamesStandAsTheyAre) {
  EXPECT_EQ(fileNameToken("Color LCD"), "Color LCD");
  EXPECT_EQ(fileNameToken("DELL U2720Q_2"), "DELL U2720Q_2");
  EXPECT_EQ(fileNameToken("unknown"), "unknown");
  EXPECT_EQ(fileNameToken("B\xC3\xBCro \xF0\x9F\x96\xA5"), "B\xC3\xBCro \xF0\x9F\x96\xA5");
  EXPECT_EQ(fileNameToken("v1.0"), "v1.0");
}

TEST(DisplayFileName, NothingLeavesTheFolder) {
  EXPECT_EQ(fileNameToken("/"), "%2F");
  EXPECT_EQ(fileNameToken("../../etc/passwd"), "%2E.%2F..%2Fetc%2Fpasswd");
  EXPECT_EQ(fileNameToken("."), "%2E");
  EXPECT_EQ(fileNameToken(".."), "%2E.");
  EXPECT_EQ(fileNameToken(".hidden"), "%2Ehidden");
}

TEST(DisplayFileName, WhatIsNotPlainTextIsEscaped) {
  EXPECT_EQ(fileNameToken("100%"), "100%25");
  EXPECT_EQ(fileNameToken("a\nb\x7F"), "a%0Ab%7F");
  EXPECT_EQ(fileNameToken(std::string_view("a\0b", 3)), "a%00b");
  EXPECT_EQ(fileNameToken("\xE9t\xE9"), "%E9t%E9");
  EXPECT_EQ(fileNameToken("cut \xF0\x9F\x98"), "cut %F0%9F%98");
  EXPECT_EQ(fileNameToken("\xE2\x80\xAEx"), "%E2%80%AEx");
}

TEST(DisplayFileName, TheEmptyNameHasATokenOfItsOwn) {
  EXPECT_EQ(fileNameToken(""), "%empty");
  EXPECT_NE(fileNameToken("%empty"), fileNameToken(""));
}

TEST(DisplayFileName, LongNamesKeepAReadableHead) {
  const std::string longName = std::string(170, 'n') + std::string(100, 'm');
  const std::string token = fileNameToken(longName);
  EXPECT_EQ(token.substr(0, 100), std::string(100, 'n'));
  EXPECT_EQ(token.substr(100, 8), "%sha256-");
  EXPECT_EQ(token.size(), 172U);
  // The checksum of "a" x 181, from coreutils' sha256sum.
  EXPECT_EQ(fileNameToken(std::string(181, 'a')).substr(108),
            "9ce4e58a8e1314bf14ca8a52ac20fa1b1e27a78c40a24b5a287422f992b29b9d");
}

TEST(DisplayFileName, TheLongestNameThatIsKeptWhole) {
  EXPECT_EQ(fileNameToken(std::string(kLongestFileNameToken, 'a')), std::string(kLongestFileNameToken, 'a'));
}

TEST(DisplayFileName, LongNamesAreNeverCutInsideACharacter) {
  for (int blanks = 0; blanks < 8; ++blanks) {
    std::string name(static_cast<std::size_t>(blanks), ' ');
    for (int i = 0; i < 100; ++i) name += "\xE3\x81\x82";
    EXPECT_TRUE(isValidUtf8(fileNameToken(name)));
    std::string control(static_cast<std::size_t>(blanks), ' ');
    control += std::string(100, '\x01');
    const std::string head = fileNameToken(control).substr(0, fileNameToken(control).find("%sha256-"));
    EXPECT_THAT(head, testing::EndsWith("%01"));
  }
}

TEST(DisplayFileName, NoTwoNamesShareAToken) {
  std::vector<std::string> names{"",     "%",           "%25",          "%empty",  "%sha256-", "a/b", "a%2Fb",
                                 "A",    "a",           "a ",           " a",      ".",        "..",  "%2E",
                                 "%2E.", "caf\xC3\xA9", "cafe\xCC\x81", "caf\xE9", "caf%E9",   "_1",  "x_1"};
  for (int byte = 0; byte < 256; ++byte) names.emplace_back(1, static_cast<char>(byte));
  for (std::size_t length = 95; length < 400; ++length) {
    names.emplace_back(length, 'n');
    names.push_back(std::string(length, 'n') + "/");
    names.push_back(fileNameToken(std::string(length, 'm')) + "%");
  }
  names.push_back(fileNameToken(std::string(300, 'n')));  // a name that looks like a token
  const std::set<std::string> distinct(names.begin(), names.end());
  std::set<std::string> tokens;
  for (const std::string& name : distinct) tokens.insert(fileNameToken(name));
  EXPECT_EQ(tokens.size(), distinct.size());
}

TEST(DisplayFileName, EveryTokenIsAFileNameOfBoundedLength) {
  std::uint32_t state = 7;
  for (int round = 0; round < 5000; ++round) {
    std::string name;
    state = state * 1664525U + 1013904223U;
    for (std::uint32_t left = (state >> 8) % 400; left > 0; --left) {
      state = state * 1664525U + 1013904223U;
      name += static_cast<char>(state >> 24);
    }
    const std::string token = fileNameToken(name);
    EXPECT_FALSE(token.empty());
    EXPECT_LE(token.size(), kLongestFileNameToken);
    EXPECT_EQ(token.find('/'), std::string::npos);
    EXPECT_FALSE(token.starts_with('.'));
    EXPECT_EQ(printable(token), token);
  }
}

}  // namespace
}  // namespace lumivane

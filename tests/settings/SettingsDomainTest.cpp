#include "settings/SettingsDomain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Integer = std::int64_t;

constexpr const char* kPath = "/config/a.plist";

class SettingsDomainTest : public testing::Test {
 protected:
  void store(const PropertyListDictionary& dictionary) {
    files_.content[kPath] = writePropertyListXml(dictionary).value();
  }
  [[nodiscard]] PropertyListDictionary stored() const {
    const Result<PropertyList> list = parsePropertyList(files_.content.at(kPath));
    return list ? *list.value().as<PropertyListDictionary>() : PropertyListDictionary{};
  }
  [[nodiscard]] SettingsDomain open() { return SettingsDomain(files_, log_, kPath); }

  MemoryFiles files_;
  RecordingLog log_;
};

TEST_F(SettingsDomainTest, WithoutAFileReadsGiveTheDefaults) {
  SettingsDomain domain = open();
  domain.registerDefaults({{"i", Integer{60}},
                           {"f", 1.5},
                           {"b", true},
                           {"s", std::string("x")},
                           {"a", PropertyListArray{PropertyListData{"blob"}}}});
  EXPECT_EQ(domain.integerForKey("i"), 60);
  EXPECT_EQ(domain.floatForKey("f"), 1.5F);
  EXPECT_TRUE(domain.boolForKey("b"));
  EXPECT_EQ(domain.stringForKey("s"), "x");
  EXPECT_THAT(domain.arrayForKey("a"), ElementsAre("blob"));
  EXPECT_THAT(log_.entries(), ElementsAre());
}

TEST_F(SettingsDomainTest, WithoutDefaultsReadsGiveNothing) {
  const SettingsDomain domain = open();
  EXPECT_EQ(domain.integerForKey("i"), 0);
  EXPECT_EQ(domain.floatForKey("f"), 0.0F);
  EXPECT_FALSE(domain.boolForKey("b"));
  EXPECT_EQ(domain.stringForKey("s"), "");
  EXPECT_THAT(domain.arrayForKey("a"), ElementsAre());
}

TEST_F(SettingsDomainTest, StoredValuesComeBeforeDefaults) {
  store({{"i", Integer{4}}, {"b", false}});
  SettingsDomain domain = open();
  domain.registerDefaults({{"i", Integer{60}}, {"b", true}});
  EXPECT_EQ(domain.integerForKey("i"), 4);
  EXPECT_FALSE(domain.boolForKey("b"));
}

TEST_F(SettingsDomainTest, UnusableValuesGiveTheDefault) {
  store({{"i", std::string("many")}, {"f", std::nan("")}, {"a", std::string("x")}, {"s", Integer{5}}});
  SettingsDomain domain = open();
  domain.registerDefaults(
      {{"i", Integer{60}}, {"f", 1.5}, {"a", PropertyListArray{}}, {"s", std::string("d")}});
  EXPECT_EQ(domain.integerForKey("i"), 60);
  EXPECT_EQ(domain.floatForKey("f"), 1.5F);
  EXPECT_THAT(domain.arrayForKey("a"), ElementsAre());
  EXPECT_EQ(domain.stringForKey("s"), "d");
}

TEST_F(SettingsDomainTest, WritesAreReadBackAtOnceAndReachTheFileWithTheFlush) {
  SettingsDomain domain = open();
  domain.setInteger("i", -7);
  domain.setFloat("f", 1.3F);
  domain.setBool("b", true);
  domain.setString("s", "a\nb");
  domain.setArray("a", {"blob", ""});
  EXPECT_EQ(domain.integerForKey("i"), -7);
  EXPECT_FALSE(files_.exists(kPath));
  EXPECT_TRUE(domain.synchronize());
  const SettingsDomain again = open();
  EXPECT_EQ(again.integerForKey("i"), -7);
  EXPECT_EQ(again.floatForKey("f"), 1.3F);
  EXPECT_TRUE(again.boolForKey("b"));
  EXPECT_EQ(again.stringForKey("s"), "a\nb");
  EXPECT_THAT(again.arrayForKey("a"), ElementsAre("blob", ""));
}

TEST_F(SettingsDomainTest, NothingChangedWritesNothing) {
  SettingsDomain domain = open();
  domain.registerDefaults({{"i", Integer{60}}});
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(files_.writes, 0);
  domain.setInteger("i", 5);
  EXPECT_TRUE(domain.synchronize());
  domain.setInteger("i", 5);
  EXPECT_TRUE(domain.synchronize());
  domain.setInteger("i", 6);
  domain.setInteger("i", 5);
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(files_.writes, 1);
}

TEST_F(SettingsDomainTest, AValueEqualToItsDefaultIsStored) {
  SettingsDomain domain = open();
  domain.registerDefaults({{"i", Integer{60}}});
  domain.setInteger("i", 60);
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(stored(), (PropertyListDictionary{{"i", Integer{60}}}));
}

TEST_F(SettingsDomainTest, NumbersThatAreNoneAreNotTaken) {
  SettingsDomain domain = open();
  domain.setFloat("f", 2.0F);
  domain.setFloat("f", std::nanf(""));
  domain.setFloat("f", HUGE_VALF);
  EXPECT_EQ(domain.floatForKey("f"), 2.0F);
}

TEST_F(SettingsDomainTest, UnknownKeysAreKept) {
  store({{"Other", PropertyListDictionary{{"deep", PropertyListArray{1.5}}}}, {"i", Integer{1}}});
  SettingsDomain domain = open();
  domain.setInteger("i", 2);
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(stored(),
            (PropertyListDictionary{{"Other", PropertyListDictionary{{"deep", PropertyListArray{1.5}}}},
                                    {"i", Integer{2}}}));
}

TEST_F(SettingsDomainTest, WhatOthersWroteMeanwhileIsKept) {
  store({{"i", Integer{1}}, {"j", Integer{1}}});
  SettingsDomain domain = open();
  store({{"i", Integer{8}}, {"j", Integer{9}}});
  domain.setInteger("i", 2);
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(stored(), (PropertyListDictionary{{"i", Integer{2}}, {"j", Integer{9}}}));
  EXPECT_EQ(domain.integerForKey("j"), 9);
}

TEST_F(SettingsDomainTest, AFileThatHasGoneIsWrittenAgain) {
  store({{"i", Integer{1}}});
  SettingsDomain domain = open();
  files_.content.clear();
  domain.setInteger("i", 1);
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(stored(), (PropertyListDictionary{{"i", Integer{1}}}));
}

TEST_F(SettingsDomainTest, AFailedFlushKeepsTheChangesForTheNext) {
  files_.unwritable.insert(kPath);
  SettingsDomain domain = open();
  domain.setInteger("i", 5);
  EXPECT_FALSE(domain.synchronize());
  EXPECT_EQ(domain.integerForKey("i"), 5);
  EXPECT_EQ(log_.countStartingWith("settings not written: "), 1U);
  files_.unwritable.clear();
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(stored(), (PropertyListDictionary{{"i", Integer{5}}}));
}

TEST_F(SettingsDomainTest, TextThatCannotBeStoredFailsTheFlush) {
  store({{"i", Integer{1}}});
  const std::string before = files_.content[kPath];
  SettingsDomain domain = open();
  domain.setString("s", "\xE9");
  EXPECT_FALSE(domain.synchronize());
  EXPECT_EQ(files_.content[kPath], before);
}

class DamagedSettings : public SettingsDomainTest, public testing::WithParamInterface<std::string> {};

TEST_P(DamagedSettings, ReadAsEmptyAndAreKept) {
  files_.content[kPath] = GetParam();
  SettingsDomain domain = open();
  domain.registerDefaults({{"i", Integer{60}}});
  EXPECT_EQ(domain.integerForKey("i"), 60);
  ASSERT_EQ(log_.entries().size(), 1U);
  EXPECT_EQ(log_.entries()[0].level, LogLevel::Error);
  EXPECT_THAT(log_.entries()[0].text, HasSubstr(kPath));

  EXPECT_TRUE(domain.synchronize());  // nothing to write: nothing is touched, and nothing is said again
  EXPECT_EQ(files_.content[kPath], GetParam());
  EXPECT_EQ(log_.entries().size(), 1U);

  domain.setInteger("i", 5);
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(stored(), (PropertyListDictionary{{"i", Integer{5}}}));
  EXPECT_EQ(files_.content[std::string(kPath) + ".damaged"], GetParam());
  EXPECT_EQ(open().integerForKey("i"), 5);
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedSettings,
                         testing::Values("", "garbage", "<plist><dict><key>DurationPerImage</key>",
                                         "bplist00", "<plist version=\"1.0\"><array/></plist>",
                                         std::string(100, '\0'), std::string((16U << 20) + 1, 'x')));

TEST_F(SettingsDomainTest, AnEarlierDamagedFileIsKeptToo) {
  const std::string damaged = std::string(kPath) + ".damaged";
  files_.content[damaged] = "the first";
  files_.content[kPath] = "the second";
  SettingsDomain domain = open();
  domain.setInteger("i", 5);
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(files_.content[damaged], "the first");
  EXPECT_EQ(files_.content[damaged + "-2"], "the second");
}

TEST_F(SettingsDomainTest, AFileThatGoesBadMeanwhileIsKeptAndWrittenAnew) {
  store({{"i", Integer{1}}, {"j", Integer{2}}});
  SettingsDomain domain = open();
  files_.content[kPath] = "garbage";
  domain.setInteger("i", 3);
  EXPECT_TRUE(domain.synchronize());
  EXPECT_EQ(stored(), (PropertyListDictionary{{"i", Integer{3}}, {"j", Integer{2}}}));
  EXPECT_EQ(files_.content[std::string(kPath) + ".damaged"], "garbage");
}

}  // namespace
}  // namespace lumivane

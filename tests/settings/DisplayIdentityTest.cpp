#include "settings/DisplayIdentity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/FakeDisplayRegistry.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using Entry = RecordingLog::Entry;

constexpr const char* kNoPort = "IOServicePortFromCGDisplayID returned an invalid port (0)";
constexpr const char* kNoName = "Failed to retrieve display name";

class DisplayIdentity : public testing::Test {
 protected:
  std::string nameOfDisplay() { return screenNameForDisplay(1, registry_, log_); }

  FakeDisplayRegistry registry_;
  RecordingLog log_;
};

TEST_F(DisplayIdentity, TheEntryWithAllThreeNumbersNamesTheDisplay) {
  registry_.identity = ReportedIdentity{10, 20, 30};
  registry_.all = {{{11, 20, 30, {{{"en_US", "vendor"}}}},
                    {10, 21, 30, {{{"en_US", "product"}}}},
                    entryNamed("serial", 31),
                    entryNamed("right", 30),
                    entryNamed("second", 30)}};
  EXPECT_EQ(nameOfDisplay(), "right");
  EXPECT_THAT(log_.entries(), ElementsAre());
}

TEST_F(DisplayIdentity, AnEntryWithoutSerialMatchesOnlyADisplayWithoutOne) {
  registry_.all = {{entryNamed("no serial")}};
  EXPECT_EQ(nameOfDisplay(), "no serial");
  registry_.identity = ReportedIdentity{10, 20, 5};
  EXPECT_EQ(nameOfDisplay(), "unknown");
}

TEST_F(DisplayIdentity, EntriesWithoutVendorOrProductArePassedOver) {
  registry_.identity = ReportedIdentity{0, 0, 0};
  registry_.all = {
      {{std::nullopt, 0, 0, {{{"en_US", "no vendor"}}}}, {0, std::nullopt, 0, {{{"en_US", "no product"}}}}}};
  EXPECT_EQ(nameOfDisplay(), "unknown");
}

TEST_F(DisplayIdentity, NumbersAreComparedBitByBit) {
  registry_.identity = ReportedIdentity{0xFFFFFFFFU, 0x80000000U, 0xFFFFFFFEU};
  registry_.all = {{{-1, INT32_MIN, -2, {{{"en_US", "negative"}}}}}};
  EXPECT_EQ(nameOfDisplay(), "negative");
}

TEST_F(DisplayIdentity, WithoutAMatchItIsUnknown) {
  EXPECT_EQ(nameOfDisplay(), "unknown");
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{kNoPort, LogLevel::Error}));
}

TEST_F(DisplayIdentity, WithoutARegistryItIsUnknown) {
  registry_.all = std::nullopt;
  EXPECT_EQ(nameOfDisplay(), "unknown");
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{kNoPort, LogLevel::Error}));
}

TEST_F(DisplayIdentity, ADisplayThatReportsNothingIsUnknown) {
  registry_.all = {{{0, 0, 0, {{{"en_US", "zeros"}}}}}};
  registry_.identity = std::nullopt;
  EXPECT_EQ(nameOfDisplay(), "unknown");
}

TEST_F(DisplayIdentity, WithoutNamesItIsUnknown) {
  registry_.all = {{{10, 20, 0, std::nullopt}}};
  EXPECT_EQ(nameOfDisplay(), "unknown");
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{kNoName, LogLevel::Error}));
}

TEST_F(DisplayIdentity, WithAnEmptyListOfNamesItIsUnknown) {
  registry_.all = {{{10, 20, 0, std::vector<std::pair<std::string, std::string>>{}}}};
  EXPECT_EQ(nameOfDisplay(), "unknown");
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"Dictionary of display names is empty!", LogLevel::Error},
                                          Entry{kNoName, LogLevel::Error}));
}

TEST_F(DisplayIdentity, TheEnglishNameIsPreferred) {
  registry_.all = {{{10, 20, 0, {{{"de_DE", "Farb-LCD"}, {"en_US", "Color LCD"}}}}}};
  EXPECT_EQ(nameOfDisplay(), "Color LCD");
}

TEST_F(DisplayIdentity, WithoutAnEnglishNameTheFirstIsTaken) {
  registry_.all = {{{10, 20, 0, {{{"fr_FR", "LCD couleur"}, {"de_DE", "Farb-LCD"}}}}}};
  EXPECT_EQ(nameOfDisplay(), "LCD couleur");
}

}  // namespace
}  // namespace lumivane

#include "settings/NamedDisplays.h"

#include <gtest/gtest.h>

#include "tests/support/FakeDisplayRegistry.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

struct OneDisplay final : Displays {
  Display display;
  [[nodiscard]] std::vector<Display> attached() const override { return {display}; }
};

struct NamedDisplaysTest : testing::Test {
  OneDisplay displays;
  FakeDisplayRegistry registry;
  RecordingLog log;

  std::string nameOf(const std::string& name, const std::string& connector) {
    displays.display.name = name;
    displays.display.connector = connector;
    return NamedDisplays(displays, registry, log).attached().front().name;
  }
};

TEST_F(NamedDisplaysTest, theWindowSystemsNameComesFirst) {
  registry.all = {{entryNamed("Monitor")}};
  EXPECT_EQ(nameOf("DELL U2720Q", "HDMI-1"), "DELL U2720Q");
}

TEST_F(NamedDisplaysTest, aMonitorKnownByItsConnectorOnlyIsNamedByItself) {
  registry.all = {{entryNamed("Monitor")}};
  EXPECT_EQ(nameOf("HDMI-1", "HDMI-1"), "Monitor");
  EXPECT_EQ(nameOf("unknown", ""), "Monitor");
}

TEST_F(NamedDisplaysTest, withoutAnyNameTheConnectorStaysAndNothingIsLogged) {
  EXPECT_EQ(nameOf("screen", "screen"), "screen");
  registry.all = std::nullopt;
  EXPECT_EQ(nameOf("screen", "screen"), "screen");
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(NamedDisplaysTest, aMonitorThatTellsNoNameKeepsItsConnector) {
  registry.all = {{DisplayRegistryEntry{10, 20, std::nullopt, std::nullopt}}};
  EXPECT_EQ(nameOf("HDMI-1", "HDMI-1"), "HDMI-1");
  EXPECT_TRUE(log.has("Failed to retrieve display name", LogLevel::Error));
}

}  // namespace
}  // namespace lumivane

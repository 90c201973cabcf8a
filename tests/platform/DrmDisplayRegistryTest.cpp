#include "platform/linux/DrmDisplayRegistry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "platform/linux/PosixFiles.h"
#include "tests/support/EdidBytes.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

// A folder that looks like the kernel's.
class DrmDisplayRegistryTest : public testing::Test {
 protected:
  ~DrmDisplayRegistryTest() override { fs::remove_all(folder_); }

  [[nodiscard]] static fs::path makeFolder() {
    std::string pattern = (fs::temp_directory_path() / "lumivane-drm-XXXXXX").string();
    return ::mkdtemp(pattern.data());
  }
  void plug(const std::string& connector, const std::string& edid) {
    fs::create_directory(folder_ / connector);
    std::ofstream(folder_ / connector / "edid", std::ios::binary) << edid;
  }
  [[nodiscard]] DrmDisplayRegistry registry(std::vector<std::string> connectors) const {
    return DrmDisplayRegistry(files_, std::move(connectors), folder_.string());
  }

  PosixFiles files_;
  const fs::path folder_ = makeFolder();
};

TEST_F(DrmDisplayRegistryTest, EveryMonitorIsAnEntry) {
  plug("card0-HDMI-A-1", edidBytes({0x10AC, 7, 99, "DELL U2720Q\n"}));
  plug("card0-DP-2", edidBytes({0x4C2D, 8, 0, {}}));
  plug("card0-DP-3", "");  // nothing plugged in
  plug("card1-DP-1", "hostile");
  fs::create_directory(folder_ / "card0-VGA-1");
  fs::create_directory(folder_ / "renderD128");
  std::ofstream(folder_ / "version") << "drm 1.1.0\n";
  const auto entries = registry({}).entries();
  ASSERT_TRUE(entries);
  ASSERT_EQ(entries->size(), 2U);
  EXPECT_EQ(entries->at(0).vendorId, 0x4C2D);
  EXPECT_EQ(entries->at(0).serialNumber, std::nullopt);
  EXPECT_EQ(entries->at(0).productNames, std::nullopt);
  EXPECT_EQ(entries->at(1).vendorId, 0x10AC);
  EXPECT_EQ(entries->at(1).productId, 7);
  EXPECT_EQ(entries->at(1).serialNumber, 99);
  const std::vector<std::pair<std::string, std::string>> names{{"en_US", "DELL U2720Q"}};
  EXPECT_EQ(entries->at(1).productNames, names);
}

TEST_F(DrmDisplayRegistryTest, WithoutGraphicsDriversThereIsNoRegistry) {
  const DrmDisplayRegistry nothing(files_, {"HDMI-1"}, (folder_ / "gone").string());
  EXPECT_FALSE(nothing.entries());
  EXPECT_FALSE(nothing.identityOf(1));
}

TEST_F(DrmDisplayRegistryTest, DisplaysReportTheMonitorOnTheirConnector) {
  plug("card0-HDMI-A-1", edidBytes({1, 2, 3, "TV"}));
  plug("card0-DP-1", edidBytes({4, 5, 0xFFFFFFFF, "Beamer"}));
  const DrmDisplayRegistry all = registry({"DP-1", "HDMI-1", "HDMI-A-1", "VGA-1", ""});
  ASSERT_TRUE(all.identityOf(1));
  EXPECT_EQ(all.identityOf(1)->vendorNumber, 4U);
  EXPECT_EQ(all.identityOf(1)->serialNumber, 0xFFFFFFFFU);
  EXPECT_EQ(all.identityOf(2)->modelNumber, 2U);
  EXPECT_EQ(all.identityOf(3)->modelNumber, 2U);
  for (const DisplayNumber none : {0U, 4U, 5U, 6U}) EXPECT_FALSE(all.identityOf(none)) << none;
}

TEST_F(DrmDisplayRegistryTest, APipeInPlaceOfAnIdentificationBlocksNothing) {
  fs::create_directory(folder_ / "card0-DP-1");
  ASSERT_EQ(::mkfifo((folder_ / "card0-DP-1" / "edid").c_str(), 0600), 0);
  EXPECT_FALSE(registry({"DP-1"}).identityOf(1));
}

TEST(IsConnector, NamesOfTheKernelAndOfTheWindowSystem) {
  EXPECT_TRUE(isConnector("card0-DP-1", "DP-1"));
  EXPECT_TRUE(isConnector("card12-HDMI-A-1", "HDMI-A-1"));
  EXPECT_TRUE(isConnector("card0-HDMI-A-1", "HDMI-1"));
  EXPECT_FALSE(isConnector("card0-HDMI-A-1", "HDMI-11"));
  EXPECT_FALSE(isConnector("card0-DP-11", "DP-1"));
  EXPECT_FALSE(isConnector("card0", "card0"));
  EXPECT_FALSE(isConnector("card0-", ""));
}

}  // namespace
}  // namespace lumivane

#include "engine/LastRunRecord.h"

#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

constexpr const char* kPath = "/data/LumivaneLastRunInfo.screen.plist";
const WallTime kThen{std::chrono::seconds(1'800'000'000)};

struct LastRunRecordTest : testing::Test {
  MemoryFiles files;
  RecordingLog log;
  LastRunRecord record{files, log};

  LastRun inFile() {
    LastRunRecord other{files, log};
    return other.loadLastRunInfo(kPath, {}).value();
  }
};

TEST_F(LastRunRecordTest, beginsARecordWhereThereIsNone) {
  const auto run = record.loadLastRunInfo(kPath, {0, kThen});
  ASSERT_TRUE(run);
  EXPECT_EQ(run->imageIndex, 0U);
  EXPECT_EQ(run->lastScan, kThen);
  EXPECT_TRUE(log.has("load last run info from: " + std::string(kPath), LogLevel::Information));
  EXPECT_TRUE(log.has("No LastRunInfo yet; initializing.", LogLevel::Information));
  EXPECT_EQ(inFile().lastScan, kThen);
}

TEST_F(LastRunRecordTest, keepsWhatWasSaved) {
  (void)record.loadLastRunInfo(kPath, {0, kThen});
  record.saveLastRunInfo({5, kThen});
  EXPECT_EQ(inFile().imageIndex, 5U);
}

TEST_F(LastRunRecordTest, leavesADamagedFileAlone) {
  files.content[kPath] = "<plist><dict><key>ImageIndex</key>";
  EXPECT_FALSE(record.loadLastRunInfo(kPath, {}));
  EXPECT_EQ(log.countStartingWith("Could not read LastRunInfo from " + std::string(kPath) + "!\nerror: "),
            1U);
  record.saveLastRunInfo({5, kThen});
  EXPECT_TRUE(log.has("lastRunInfoPath_ or lastRunInfo_ = nil!", LogLevel::Error));
  EXPECT_EQ(files.content[kPath], "<plist><dict><key>ImageIndex</key>");
}

TEST_F(LastRunRecordTest, takesAnotherRootThanADictionaryAsDamage) {
  files.content[kPath] = writePropertyListXml(PropertyList(std::int64_t{5})).value();
  EXPECT_FALSE(record.loadLastRunInfo(kPath, {}));
}

TEST_F(LastRunRecordTest, readsAbsentOrUnusableKeysAsAbsent) {
  PropertyListDictionary odd{{"ImageIndex", PropertyList(std::string("five"))}};
  files.content[kPath] = writePropertyListXml(odd).value();
  const auto run = record.loadLastRunInfo(kPath, {});
  ASSERT_TRUE(run);
  EXPECT_EQ(run->imageIndex, 0U);
  EXPECT_FALSE(run->lastScan);
}

TEST_F(LastRunRecordTest, saysWhenItCannotWrite) {
  (void)record.loadLastRunInfo(kPath, {0, kThen});
  const std::string before = files.content[kPath];
  files.unwritable.insert(kPath);
  record.saveLastRunInfo({6, kThen});
  EXPECT_EQ(
      log.countStartingWith("Couldn't write last run info to file: " + std::string(kPath) + "!\nerror: "),
      1U);
  EXPECT_EQ(files.content[kPath], before);
}

TEST(ResumePosition, goesOnWithThePictureShownLast) {
  EXPECT_EQ(resumePosition(5, 10), 4U);
  EXPECT_EQ(resumePosition(0, 10), 0U);
  EXPECT_EQ(resumePosition(12, 10), 0U);
  EXPECT_EQ(resumePosition(10, 10), 9U);
  EXPECT_EQ(resumePosition(3, 0), 0U);
}

}  // namespace
}  // namespace lumivane

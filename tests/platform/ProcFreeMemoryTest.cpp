#include "platform/linux/ProcFreeMemory.h"

#include <cerrno>

#include "platform/linux/ControlGroupMemory.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

constexpr std::int64_t kMiB = 1024 * 1024;

class ProcFreeMemoryTest : public ::testing::Test {
 protected:
  void machineHas(std::int64_t availableMB) {
    folder_.write("proc/meminfo",
                  "MemTotal:       16000000 kB\nMemFree:          100000 kB\nMemAvailable:   " +
                      std::to_string(availableMB * 1024) + " kB\nBuffers:  5 kB\n");
  }
  void memberOf(std::string_view text) { folder_.write("proc/self/cgroup", text); }
  void unifiedGroup(const std::string& path, const std::string& limit, std::int64_t useMB,
                    std::int64_t inactiveMB) {
    folder_.write("groups" + path + "/memory.max", limit + "\n");
    folder_.write("groups" + path + "/memory.current", std::to_string(useMB * kMiB) + "\n");
    folder_.write("groups" + path + "/memory.stat",
                  "anon 1\ninactive_file " + std::to_string(inactiveMB * kMiB) + "\nactive_file 7\n");
  }
  [[nodiscard]] Result<std::int64_t> freeMB() const {
    return ProcFreeMemory(folder_ / "proc", folder_ / "groups").freeAndReclaimableMB();
  }

  TemporaryFolder folder_;
};

TEST_F(ProcFreeMemoryTest, IsWhatTheMachineHasAvailable) {
  machineHas(3072);
  EXPECT_EQ(freeMB().value(), 3072);
}

TEST_F(ProcFreeMemoryTest, FailsWithTheSystemsErrorNumber) {
  EXPECT_EQ(freeMB().error(), std::to_string(ENOENT));
  folder_.write("proc/meminfo", "MemFree: 12 kB\n");
  EXPECT_EQ(freeMB().error(), std::to_string(ENODATA));
  folder_.write("proc/meminfo", "MemAvailable: plenty\n");
  EXPECT_EQ(freeMB().error(), std::to_string(ENODATA));
}

TEST_F(ProcFreeMemoryTest, AGroupsLimitCountsWhereItIsTighter) {
  machineHas(8000);
  memberOf("0::/user/app\n");
  unifiedGroup("/user/app", std::to_string(1000 * kMiB), 700, 200);
  EXPECT_EQ(freeMB().value(), 500);
  machineHas(100);
  EXPECT_EQ(freeMB().value(), 100);
}

TEST_F(ProcFreeMemoryTest, TheTightestGroupOnTheWayUpCounts) {
  machineHas(8000);
  memberOf("0::/user/session/app\n");
  unifiedGroup("/user/session/app", "max", 100, 0);
  unifiedGroup("/user/session", std::to_string(2000 * kMiB), 200, 0);
  unifiedGroup("/user", std::to_string(1000 * kMiB), 900, 50);
  EXPECT_EQ(freeMB().value(), 150);
}

TEST_F(ProcFreeMemoryTest, AGroupThatIsSlowedDownCountsAsLimited) {
  machineHas(8000);
  memberOf("0::/app\n");
  unifiedGroup("/app", "max", 100, 0);
  folder_.write("groups/app/memory.high", std::to_string(400 * kMiB));
  EXPECT_EQ(freeMB().value(), 300);
}

TEST_F(ProcFreeMemoryTest, InAContainerTheRootCounts) {
  machineHas(8000);
  unifiedGroup("", std::to_string(600 * kMiB), 100, 0);
  for (const char* membership : {"0::/\n", "0::/docker/0123abc\n", "0::/../outside\n", "0::/a"}) {
    memberOf(membership);
    EXPECT_EQ(freeMB().value(), 500) << membership;
  }
}

TEST_F(ProcFreeMemoryTest, AnOverdrawnGroupHasNothingLeft) {
  machineHas(8000);
  memberOf("0::/app\n");
  unifiedGroup("/app", std::to_string(100 * kMiB), 150, 0);
  EXPECT_EQ(freeMB().value(), 0);
}

TEST_F(ProcFreeMemoryTest, UnderstandsTheOlderGroups) {
  machineHas(8000);
  memberOf("12:cpu,cpuacct:/slice\n4:memory:/slice/app\n1:name=systemd:/slice\n");
  folder_.write("groups/memory/slice/app/memory.limit_in_bytes", std::to_string(300 * kMiB));
  folder_.write("groups/memory/slice/app/memory.usage_in_bytes", std::to_string(250 * kMiB));
  folder_.write("groups/memory/slice/app/memory.stat",
                "inactive_file 1\ntotal_inactive_file " + std::to_string(30 * kMiB) + "\n");
  folder_.write("groups/memory/memory.limit_in_bytes", "9223372036854771712\n");
  folder_.write("groups/memory/memory.usage_in_bytes", "4096\n");
  EXPECT_EQ(freeMB().value(), 80);
}

TEST_F(ProcFreeMemoryTest, NonsenseInGroupsIsNoLimit) {
  machineHas(8000);
  for (const char* membership : {"", "::", "0:", "0::relative\n", "no colons at all", "\n\n"}) {
    memberOf(membership);
    EXPECT_EQ(freeMB().value(), 8000) << membership;
  }
  memberOf("0::/app\n");
  unifiedGroup("/app", "-5", 1, 1);
  EXPECT_EQ(freeMB().value(), 8000);
  unifiedGroup("/app", "99999999999999999999999", 1, 1);
  EXPECT_EQ(freeMB().value(), 8000);
}

TEST(ProcFreeMemoryOfThisMachine, IsPlausible) {
  const Result<std::int64_t> free = ProcFreeMemory().freeAndReclaimableMB();
  ASSERT_TRUE(free.ok()) << free.error();
  EXPECT_GT(free.value(), 0);
  EXPECT_LT(free.value(), std::int64_t{64} * 1024 * 1024);
}

TEST(NumberAfter, FindsTheNumberOfALine) {
  EXPECT_EQ(numberAfter("b", "a 1\nb 2\n"), 2);
  EXPECT_EQ(numberAfter("b:", "b:\t  2 kB"), 2);
  EXPECT_EQ(numberAfter("file", "file_mapped 1\nfile 3"), 3);
  EXPECT_EQ(numberAfter("", "17\n"), 17);
  EXPECT_EQ(numberAfter("c", "a 1\nb 2"), std::nullopt);
  EXPECT_EQ(numberAfter("a", ""), std::nullopt);
}

}  // namespace
}  // namespace lumivane

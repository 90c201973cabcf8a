#include "engine/PictureDeletion.h"

#include "tests/support/FakeDesktop.h"

namespace lumivane {
namespace {

struct PictureDeletionTest : testing::Test {
  VirtualClock clock;
  VirtualMainLoop loop{clock};
  VirtualSerialQueues queues{loop};
  MemoryFiles files;
  FakeTrash trash{files};
  std::unique_ptr<PictureDeletion> deletion = std::make_unique<PictureDeletion>(queues, loop, files, trash);
  std::vector<DeletionOutcome> outcomes;

  void begin(const std::string& path) {
    deletion->begin(path, [this](const DeletionOutcome& outcome) { outcomes.push_back(outcome); });
  }
};

TEST_F(PictureDeletionTest, makesNoQueueBeforeItIsNeeded) {
  EXPECT_TRUE(queues.names.empty());
  begin("/a.jpg");
  begin("/b.jpg");
  EXPECT_EQ(queues.names, std::vector<std::string>{"LumivaneTrashQueue"});
}

TEST_F(PictureDeletionTest, movesTheFileAndTells) {
  files.content["/a.jpg"] = "x";
  begin("/a.jpg");
  EXPECT_TRUE(trash.trashed.empty()) << "not at once";
  loop.runPending();
  EXPECT_EQ(trash.trashed, std::vector<std::string>{"/a.jpg"});
  ASSERT_EQ(outcomes.size(), 1U);
  EXPECT_FALSE(outcomes[0]);
}

TEST_F(PictureDeletionTest, tellsWhyAFileStays) {
  files.content["/a.jpg"] = "x";
  files.unreadable.insert("/a.jpg");
  trash.failure = "no trash here";
  begin("/a.jpg");
  begin("/gone.jpg");
  loop.runPending();
  ASSERT_EQ(outcomes.size(), 2U);
  EXPECT_EQ(outcomes[0]->reason, "Failed to delete /a.jpg!\n Error: no trash here");
  EXPECT_EQ(outcomes[0]->fileAccess, "Error: /a.jpg: Permission denied");
  EXPECT_EQ(outcomes[1]->reason, "Image at path /gone.jpg does not exist!");
  EXPECT_EQ(outcomes[1]->fileAccess, "Error: /gone.jpg: No such file or directory");
}

TEST_F(PictureDeletionTest, aFileUnderWayIsLeftToThat) {
  files.content["/a.jpg"] = "x";
  begin("/a.jpg");
  begin("/a.jpg");
  loop.runPending();
  EXPECT_EQ(outcomes.size(), 1U);
  begin("/a.jpg");
  loop.runPending();
  EXPECT_EQ(outcomes.size(), 2U) << "once it is done, it may be asked for anew";
}

TEST_F(PictureDeletionTest, isSilentOnceItIsGone) {
  files.content["/a.jpg"] = "x";
  begin("/a.jpg");
  deletion.reset();
  loop.runPending();
  EXPECT_TRUE(outcomes.empty());
  EXPECT_TRUE(trash.trashed.empty()) << "what has not begun is dropped";
}

TEST(FileAccessText, saysWhatOpeningSays) {
  MemoryFiles files;
  files.content["/there"] = "x";
  EXPECT_EQ(fileAccessText(files, "/there"), "  No error found!");
  EXPECT_EQ(fileAccessText(files, "/nowhere"), "Error: /nowhere: No such file or directory");
}

}  // namespace
}  // namespace lumivane

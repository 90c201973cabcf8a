#include "engine/CollectionStore.h"

#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VirtualTime.h"

namespace lumivane {
namespace {

using testing::ElementsAre;

constexpr const char* kList = "/data/list";

struct CollectionStoreTest : testing::Test {
  void storeFolders(std::vector<std::string> imagefiles) {
    store->storeFolders({std::move(imagefiles), {folder.path()}}, "", kList,
                        [this](StoredCollection collection) { stored = std::move(collection); });
  }
  void pass(int seconds) { loop.runFor(std::chrono::seconds(seconds)); }

  TemporaryFolder folder;
  VirtualClock clock;
  VirtualMainLoop loop{clock};
  VirtualSerialQueues queues{loop};
  MemoryFiles files;
  RecordingLog log;
  std::optional<StoredCollection> stored;
  std::unique_ptr<CollectionStore> store = std::make_unique<CollectionStore>(queues, loop, files, log);
};

TEST_F(CollectionStoreTest, makesNoQueueBeforeItIsNeeded) {
  EXPECT_TRUE(queues.names.empty());
  storeFolders({});
  storeFolders({});
  EXPECT_THAT(queues.names, ElementsAre("LumivaneScanQueue"));
}

TEST_F(CollectionStoreTest, foldersAreSortedAndRemembered) {
  storeFolders({"/p/10.jpg", "/p/9.jpg"});
  EXPECT_FALSE(stored) << "not on the main thread";
  pass(1);
  ASSERT_TRUE(stored);
  EXPECT_THAT(stored->imagefiles, ElementsAre("/p/9.jpg", "/p/10.jpg"));
  EXPECT_EQ(stored->directoryBookmarks->size(), 1U);
  EXPECT_EQ(files.content[kList], "/p/9.jpg\n/p/10.jpg");
}

TEST_F(CollectionStoreTest, bookmarksAreMadeBeforeTheListIsWritten) {
  storeFolders({});
  pass(1);
  std::vector<std::string> said;
  for (const auto& entry : log.entries()) said.push_back(entry.text);
  EXPECT_THAT(said, ElementsAre("createBookmarks: 1 directories", "Bookmark for: " + folder.path(),
                                "saving image list (path = /data/list)"));
}

TEST_F(CollectionStoreTest, albumsKeepTheirOrderAndHaveNoFolders) {
  store->storeAlbum({"/p/10.jpg", "/p/9.jpg"}, kList, [this](StoredCollection c) { stored = std::move(c); });
  pass(1);
  EXPECT_THAT(stored->imagefiles, ElementsAre("/p/10.jpg", "/p/9.jpg"));
  EXPECT_FALSE(stored->directoryBookmarks);
  EXPECT_EQ(files.content[kList], "/p/10.jpg\n/p/9.jpg");
}

TEST_F(CollectionStoreTest, whatIsForgottenIsNeitherWrittenNorTold) {
  queues.jobTime = std::chrono::seconds(10);
  storeFolders({"/p/1.jpg"});
  EXPECT_FALSE(store->cancel());
  pass(60);
  EXPECT_FALSE(stored);
  EXPECT_FALSE(files.content.contains(kList));
}

TEST_F(CollectionStoreTest, aShortenedListIsWrittenOnTheQueue) {
  store->storeShortened({"/p/2.jpg"}, kList);
  EXPECT_FALSE(files.content.contains(kList)) << "not on the main thread";
  pass(1);
  EXPECT_EQ(files.content[kList], "/p/2.jpg");
}

TEST_F(CollectionStoreTest, ofSeveralShortenedListsTheLastIsWrittenOnce) {
  store->storeShortened({"/p/1.jpg", "/p/2.jpg"}, kList);
  store->storeShortened({"/p/2.jpg"}, kList);
  pass(1);
  EXPECT_EQ(files.content[kList], "/p/2.jpg");
  EXPECT_EQ(log.countStartingWith("saving image list"), 1U);
}

TEST_F(CollectionStoreTest, aShortenedListIsThereBeforeItIsReadAgain) {
  queues.jobTime = std::chrono::seconds(10);
  store->storeShortened({"/p/2.jpg"}, kList);
  store->finishShortened();
  EXPECT_EQ(files.content[kList], "/p/2.jpg");
  files.content[kList] = "as another program left it";
  pass(60);
  EXPECT_EQ(files.content[kList], "as another program left it") << "written once";
}

TEST_F(CollectionStoreTest, aShortenedListIsNotLostAtTheEnd) {
  queues.jobTime = std::chrono::seconds(10);
  store->storeShortened({"/p/2.jpg"}, kList);
  store.reset();
  EXPECT_EQ(files.content[kList], "/p/2.jpg");
}

TEST_F(CollectionStoreTest, aShortenedListNeverReplacesTheNewCollection) {
  store->storeShortened({"/old/2.jpg"}, kList);
  storeFolders({"/p/1.jpg"});
  store->storeShortened({"/old/3.jpg"}, kList);
  pass(1);
  EXPECT_EQ(files.content[kList], "/p/1.jpg");
}

// What happens between the end of the queue's work and the next turn of the main loop.
struct CollectionStoreWritten : CollectionStoreTest {
  struct ReadyQueues final : SerialQueues {
    struct Ready final : SerialQueue {
      void async(Job job) override { job(); }
    };
    [[nodiscard]] std::unique_ptr<SerialQueue> make(const std::string&) override {
      return std::make_unique<Ready>();
    }
  };
  CollectionStoreWritten() {
    store = std::make_unique<CollectionStore>(ready, loop, files, log);
    storeFolders({"/p/1.jpg"});
    EXPECT_TRUE(files.content.contains(kList));
  }
  ~CollectionStoreWritten() override { store.reset(); }
  ReadyQueues ready;
};

TEST_F(CollectionStoreWritten, isHandedBackWhenForgotten) {
  const auto written = store->cancel();
  ASSERT_TRUE(written);
  EXPECT_EQ(written->directoryBookmarks->size(), 1U);
  pass(1);
  EXPECT_FALSE(stored);
  EXPECT_FALSE(store->cancel()) << "once";
}

TEST_F(CollectionStoreWritten, isHandedBackAtTheEnd) {
  EXPECT_TRUE(store->finish());
  store.reset();
  pass(1);
  EXPECT_FALSE(stored);
}

TEST_F(CollectionStoreWritten, isToldOnce) {
  pass(1);
  EXPECT_TRUE(stored);
  EXPECT_FALSE(store->finish());
}

}  // namespace
}  // namespace lumivane

// Scans with a real walk, a real queue for the list and real files, ended at every moment.
#include "engine/CollectionScan.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/ThreadSerialQueues.h"
#include "tests/support/FakePhotoLibrary.h"
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

struct ViewScanThreadsTest : SheetViewTest {
  ViewScanThreadsTest() {
    for (int i = 0; i < 300; ++i) pictureFolder.write("sub/p" + std::to_string(i) + ".jpg", "x");
    folders.data = data.path();
    photoLibrary = &library;
    library.list.albums = {{"Sea", "1", 1}};
    library.members["1"] = {{.path = "/x.photoslibrary/a.jpg"}};
  }
  void startOnThreads() {
    settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
    Host threaded{.clock = clock,
                  .mainLoop = loop,
                  .queues = threads,
                  .log = log,
                  .displays = displays,
                  .settings = *settingsStore,
                  .files = disk,
                  .decoder = decoder,
                  .random = random,
                  .memory = memory,
                  .text = text,
                  .geocoder = nullptr,
                  .application = application,
                  .fileBrowser = fileBrowser,
                  .trash = trash,
                  .sounds = sounds,
                  .tables = tables,
                  .folders = folders,
                  .programVersion = {"1.0", "42"},
                  .systemVersion = {12, 0, 0},
                  .configureSheet = configureSheet,
                  .folderChooser = folderChooser,
                  .photoLibrary = photoLibrary};
    view = LumivaneView::initWithFrame({{0, 0}, {1920, 1080}}, false, threaded);
    view->viewWillMoveToWindow(&window);
  }
  void beginScan() {
    actions().rescanDirectory();
    close();
  }
  // Until something is said, in real time.
  void runUntilSaid(const std::string& beginning) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (log.countStartingWith(beginning) == 0 && std::chrono::steady_clock::now() < deadline) {
      loop.runFor(std::chrono::milliseconds(250));
      loop.letOthersWork();
    }
    ASSERT_GT(log.countStartingWith(beginning), 0U) << beginning;
  }
  TemporaryFolder data;
  PosixFiles disk;
  FakePhotoLibrary library;
  ThreadSerialQueues threads{log};
};

TEST_F(ViewScanThreadsTest, collectsAgainAndAgain) {
  startOnThreads();
  for (int i = 0; i < 5; ++i) {
    beginScan();
    runScan();
    EXPECT_EQ(view->imageFiles().size(), 300U);
  }
}

TEST_F(ViewScanThreadsTest, endsWhileTheWalkRuns) {
  for (int i = 0; i < 20; ++i) {
    startOnThreads();
    beginScan();
    view.reset();
    loop.runFor(std::chrono::seconds(5));
  }
}

TEST_F(ViewScanThreadsTest, endsWhileTheListIsStored) {
  for (int i = 0; i < 20; ++i) {
    log.clear();
    startOnThreads();
    beginScan();
    runUntilSaid("Finished directory scan.");
    view.reset();
    loop.runFor(std::chrono::seconds(5));
  }
}

// The folders that a stored list was made from are stored with it, whenever the program ends.
TEST_F(ViewScanThreadsTest, listAndFoldersAreStoredTogether) {
  for (int i = 0; i < 20; ++i) {
    log.clear();
    configure([](DisplaySettings& s) { s.directoryBookmarks_ = emptyBookmarks(); });
    std::filesystem::remove(data / ("LumivaneImageList." + fileNameToken("Color LCD") + ".plist"));
    startOnThreads();
    view->setMainDirectoryLocation(pictureFolder.path());
    beginScan();
    runUntilSaid("Finished directory scan.");
    view.reset();
    const bool listIsThere =
        std::filesystem::exists(data / ("LumivaneImageList." + fileNameToken("Color LCD") + ".plist"));
    EXPECT_EQ(listIsThere, stored().directoryBookmarks_ != emptyBookmarks());
  }
}

TEST_F(ViewScanThreadsTest, movesToAnotherDisplayWhileTheWalkRuns) {
  displays.all.push_back({2, "Projector", {}, 1});
  startOnThreads();
  for (int i = 0; i < 20; ++i) {
    beginScan();
    window.display = i % 2 == 0 ? 2 : 1;
    view->viewWillMoveToWindow(&window);
    EXPECT_FALSE(view->queryIsInProgress());
    view->setMainDirectoryLocation(pictureFolder.path());
  }
}

TEST_F(ViewScanThreadsTest, collectsAnAlbum) {
  startOnThreads();
  runUntilSaid("num albums = 1");
  choose(SheetControl::albumView_, 0, &SheetActions::selectAlbum);
  close();
  runScan();
  EXPECT_EQ(view->imageFiles(), ImageList{"/x.photoslibrary/a.jpg"});
}

TEST_F(ViewScanThreadsTest, endsWhileAlbumsAreRead) {
  for (int i = 0; i < 20; ++i) {
    startOnThreads();
    view.reset();
    loop.runFor(std::chrono::seconds(1));
  }
}

}  // namespace
}  // namespace lumivane

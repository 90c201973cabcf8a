// A scan of a folder from the sheet's closing to the first new picture.
#include "tests/support/FakeMetadataQuery.h"
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

using enum SheetControl;
using testing::ElementsAre;
using testing::IsEmpty;

struct ViewScanTest : SheetViewTest {
  // Every file has one byte, which is enough.
  void writePictures(std::initializer_list<const char*> names) {
    for (const char* name : names) {
      pictureFolder.write(name, "x");
      decoder.pictures[pictureFolder / name] = pictureOf(4000, 3000);
    }
  }
  void beginScan() {
    view->preferencesSheet()->beginSheet({});
    actions().rescanDirectory();
    log.clear();
    close();
  }
  void scan() {
    beginScan();
    runScan();
  }
  // The same without a heartbeat: no picture changes.
  void scanOnly() {
    beginScan();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (view->queryIsInProgress() && std::chrono::steady_clock::now() < deadline) {
      loop.runFor(std::chrono::milliseconds(250));
      loop.letOthersWork();
    }
    ASSERT_FALSE(view->queryIsInProgress());
  }
  // Lets the walk go on until it asks for a folder.
  void runUntilAsked() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (chooser.open.empty() && std::chrono::steady_clock::now() < deadline) {
      run(Seconds{0.02});
      loop.letOthersWork();
    }
    ASSERT_FALSE(chooser.open.empty());
  }
  // The log without identities, and without what the walk says on its own thread or as often as it happens to take.
  [[nodiscard]] std::vector<std::string> said() const {
    std::vector<std::string> lines;
    for (const auto& entry : log.entries()) {
      std::string line = entry.text;
      const bool soFar = line.starts_with("sheet: count") && line.find("alias dirs") == std::string::npos;
      const bool often = line.starts_with("num images so far") || line.starts_with("Directories ") ||
                         line.starts_with("Finished directory scan by hand") ||
                         (soFar && (lines.empty() || lines.back() != "sheet: spins"));
      if (often) continue;
      if (const std::size_t id = line.find("(id = "); id != std::string::npos) line.resize(id);
      lines.push_back(std::move(line));
    }
    return lines;
  }
};

TEST_F(ViewScanTest, goesThroughItsStepsInOrder) {
  writePictures({"b.jpg", "a.jpg"});
  startShow();
  scanOnly();
  const std::string folder = pictureFolder.path();
  EXPECT_THAT(said(),
              ElementsAre("stop animation   ", "Scan directory " + folder + "  ", "sheet: spins",
                          "sheet: count 0", "Starting directory scan 'by hand' ...", "sheet: apply disabled",
                          "Finished directory scan.", "Num images = 2  ",
                          "sheet: count 2   (# alias dirs = 0)", "sheet: stands", "sheet: apply enabled",
                          "sheet: ended", "createBookmarks: 1 directories", "Bookmark for: " + folder,
                          "saving image list (path = /data/LumivaneImageList.Color LCD.plist)",
                          "writing defaults (display name = Color LCD)", "start animation  ",
                          "sheet: apply enabled"));
}

TEST_F(ViewScanTest, theWalkTellsWhatItHasSeen) {
  writePictures({"b.jpg", "sub/a.jpg"});
  startShow();
  scan();
  EXPECT_TRUE(log.has("Finished directory scan by hand. Num images = 2", LogLevel::Information));
  EXPECT_TRUE(
      log.has("Directories traversed = 1 (root and dirs pointed at by aliases)", LogLevel::Information));
  EXPECT_TRUE(log.has("Directories total = 2 (incl subdirectories)", LogLevel::Information));
}

TEST_F(ViewScanTest, tellsWhoseScanItIs) {
  startShow();
  scan();
  EXPECT_TRUE(log.has("Scan directory " + pictureFolder.path() + "  (id = " + identity() + ")",
                      LogLevel::Information));
  EXPECT_TRUE(log.has("Num images = 0  (id = " + identity() + ")", LogLevel::Information));
}

TEST_F(ViewScanTest, theListIsInTheOrderOfAFileBrowser) {
  writePictures({"file10.jpg", "File1.jpg", "file2.jpg"});
  startShow();
  scan();
  EXPECT_THAT(view->imageFiles(), ElementsAre(pictureFolder / "File1.jpg", pictureFolder / "file2.jpg",
                                              pictureFolder / "file10.jpg"));
  EXPECT_EQ(listFile(),
            pictureFolder / "File1.jpg\n" + pictureFolder / "file2.jpg\n" + pictureFolder / "file10.jpg");
}

TEST_F(ViewScanTest, theLanguageDecidesTheOrder) {
  writePictures({"z.jpg", "\u00E4.jpg", "b.jpg"});
  settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
  Host swedish = host();
  swedish.collationLocale = "sv";
  view = LumivaneView::initWithFrame({{0, 0}, window.rectangle.size}, false, swedish);
  view->viewWillMoveToWindow(&window);
  scan();
  EXPECT_THAT(view->imageFiles(),
              ElementsAre(pictureFolder / "b.jpg", pictureFolder / "z.jpg", pictureFolder / "\u00E4.jpg"));
}

TEST_F(ViewScanTest, theShowStandsWhileItRuns) {
  writePictures({"a.jpg"});
  startShow();
  const std::string shown = view->filename();
  queues.jobTime = std::chrono::seconds(100);  // storing a very long list
  beginScan();
  run(Seconds{60});
  EXPECT_TRUE(view->queryIsInProgress());
  EXPECT_EQ(view->filename(), shown);
  view->startAnimation();  // the window was hidden and is seen again
  run(Seconds{30});
  EXPECT_EQ(view->filename(), shown);
  runScan();
}

TEST_F(ViewScanTest, theOldCollectionStaysUntilTheNewOneIsStored) {
  writePictures({"a.jpg"});
  startShow(5);
  queues.jobTime = std::chrono::seconds(100);
  beginScan();
  run(Seconds{50});
  EXPECT_EQ(view->imageFiles().size(), 5U);
  runScan();
  EXPECT_EQ(view->imageFiles().size(), 1U);
}

TEST_F(ViewScanTest, showsANewPictureAtOnce) {
  writePictures({"a.jpg"});
  startShow();
  scan();
  run(Seconds{0.1});
  EXPECT_EQ(view->filename(), pictureFolder / "a.jpg");
}

TEST_F(ViewScanTest, startsANewPassOverAllPictures) {
  writePictures({"a.jpg", "b.jpg", "c.jpg"});
  startShow();
  scanOnly();
  EXPECT_EQ(view->imagesNotYetShown(), makeIndexList(3));
  EXPECT_EQ(view->firstLine(), "Loading ..");
  EXPECT_FALSE(view->prefetchSlot().full());
}

TEST_F(ViewScanTest, dropsWhatWasPrefetchedFromTheOldList) {
  writePictures({"a.jpg"});
  startShow();
  run(Seconds{4});
  ASSERT_TRUE(view->prefetchSlot().full());
  scan();
  run(Seconds{0.1});
  EXPECT_EQ(view->filename(), pictureFolder / "a.jpg");
}

TEST_F(ViewScanTest, doesNotTellOfOldPicturesThatWereGone) {
  writePictures({"a.jpg"});
  startShow();
  decoder.pictures.clear();
  run(Seconds{4});
  ASSERT_TRUE(view->prefetchSlot().prefetchNextImageFailed_);
  writePictures({"a.jpg"});
  scan();
  run(Seconds{0.1});
  EXPECT_EQ(log.count("Several images in a row are gone!"), 0U);
  EXPECT_EQ(view->filename(), pictureFolder / "a.jpg");
}

TEST_F(ViewScanTest, beginsAnywhereWhenAskedTo) {
  writePictures({"a.jpg", "b.jpg", "c.jpg"});
  configure([](DisplaySettings& s) {
    s.dontRandomize_ = true;
    s.startWithRandom_ = true;
  });
  random.script = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7};
  startShow();
  scanOnly();
  EXPECT_EQ(view->imageIndex(), 1U) << "7 modulo 3";
}

TEST_F(ViewScanTest, beginsAtTheBeginningOtherwise) {
  writePictures({"a.jpg", "b.jpg", "c.jpg"});
  configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
  startShow();
  run(Seconds{25});
  ASSERT_NE(view->imageIndex(), 0U);
  scanOnly();
  EXPECT_EQ(view->imageIndex(), 0U);
  run(Seconds{0.1});
  EXPECT_EQ(view->filename(), pictureFolder / "b.jpg") << "list order goes on after the position";
}

TEST_F(ViewScanTest, anEmptyFolderGivesAnEmptyListAndSaysSo) {
  configure([](DisplaySettings& s) { s.startWithRandom_ = true; });
  startShow();
  run(Seconds{25});
  scan();
  EXPECT_EQ(view->imageIndex(), 0U);
  EXPECT_THAT(view->imageFiles(), IsEmpty());
  EXPECT_EQ(listFile(), "");
  EXPECT_EQ(sheet.count(), "0   (# alias dirs = 0)");
  run(Seconds{0.1});
  EXPECT_EQ(view->firstLine(), "No images. Please choose directory other than " + pictureFolder.path());
}

TEST_F(ViewScanTest, theTimeOfTheScanIsRecorded) {
  startShow();
  scan();
  const WallTime end = clock.wallTime();
  view->saveLastRunInfo();
  RecordingLog quiet;
  LastRunRecord record(files, quiet);
  const auto run_ = record.loadLastRunInfo("/data/LumivaneLastRunInfo.Color LCD.plist", {});
  ASSERT_TRUE(run_ && run_->lastScan);
  EXPECT_LE(std::chrono::abs(*run_->lastScan - end), std::chrono::seconds(1));
}

TEST_F(ViewScanTest, theNewFolderIsStoredWithTheList) {
  TemporaryFolder home;  // not called by the name of the temporary folder
  writePictures({"a.jpg"});
  startShow();
  view->setMainDirectoryLocation(pictureFolder.path());
  scan();
  RecordingLog quiet;
  EXPECT_EQ(resolveBookmarks(stored().directoryBookmarks_, quiet).mainDirectoryLocation,
            pictureFolder.path());
}

TEST_F(ViewScanTest, skipsWhatTheSettingsSay) {
  writePictures({"a.jpg", "thumbs.jpg", "note.txt"});
  pictureFolder.write("empty.jpg", "");
  startShow();
  scan();
  EXPECT_THAT(view->imageFiles(), ElementsAre(pictureFolder / "a.jpg"));
}

TEST_F(ViewScanTest, aListThatCannotBeWrittenIsShownAllTheSame) {
  writePictures({"a.jpg"});
  startShow();
  files.unwritable.insert("/data/LumivaneImageList.Color LCD.plist");
  scan();
  EXPECT_EQ(log.countStartingWith("saving image list failed"), 1U);
  EXPECT_EQ(view->imageFiles().size(), 1U);
}

TEST_F(ViewScanTest, aFolderThatHasGoneGivesAnEmptyList) {
  startShow();
  view->setMainDirectoryLocation("/nowhere/at/all");
  scan();
  EXPECT_EQ(log.countStartingWith("enumeratorAtURL: /nowhere/at/all"), 1U);
  EXPECT_THAT(view->imageFiles(), IsEmpty());
}

TEST_F(ViewScanTest, withoutAFolderThereIsNoScan) {
  withFolder = false;
  configure([](DisplaySettings& s) { s.directoryBookmarks_ = emptyBookmarks(); });
  start();
  log.clear();
  view->scanForImages();
  EXPECT_FALSE(view->queryIsInProgress());
  EXPECT_TRUE(log.has("There is no folder to scan!", LogLevel::Error));
  EXPECT_EQ(log.countStartingWith("start animation"), 1U);
}

TEST_F(ViewScanTest, asksForOneScanAtATime) {
  startShow();
  beginScan();
  view->scanForImages();
  EXPECT_EQ(log.countStartingWith("Scan directory"), 1U);
  runScan();
}

TEST_F(ViewScanTest, withoutAnIndexFoldersAreWalked) {
  writePictures({"a.jpg"});
  configure([](DisplaySettings& s) { s.useSpotlight_ = true; });
  startShow();
  scan();
  EXPECT_TRUE(log.has("Starting directory scan using spotlight ...", LogLevel::Information));
  EXPECT_TRUE(log.has("There is no index; the folders are walked.", LogLevel::Information));
  EXPECT_EQ(log.count("Finished directory scan."), 1U);
  EXPECT_EQ(sheet.count(), "1");
  EXPECT_EQ(view->imageFiles().size(), 1U);
}

// --- The index ---

struct ViewIndexScanTest : ViewScanTest {
  ViewIndexScanTest() {
    metadataQuery = &index;
    index.gathering = false;
    configure([](DisplaySettings& s) {
      s.useSpotlight_ = true;
      s.excludekB_ = 5;
      s.excludeSize_ = 200;
    });
  }
  FakeMetadataQuery index{clock};
};

TEST_F(ViewIndexScanTest, collectsWhatTheIndexKnows) {
  startShow();
  index.results = {"/p/10.jpg", "/p/thumb/1.jpg", "/p/2.jpg"};
  scan();
  EXPECT_THAT(index.started, ElementsAre(PicturePredicate{pictureFolder.path(), 5 * 1024, 200}));
  EXPECT_TRUE(log.has("Starting directory scan using spotlight ...", LogLevel::Information));
  EXPECT_TRUE(log.has("Finished spotlight search; num images from query = 3  (id = " + identity() + ")",
                      LogLevel::Information));
  EXPECT_THAT(view->imageFiles(), ElementsAre("/p/2.jpg", "/p/10.jpg"));
  EXPECT_EQ(listFile(), "/p/2.jpg\n/p/10.jpg");
  EXPECT_EQ(sheet.count(), "2");
  EXPECT_EQ(stored().directoryBookmarks_.size(), 1U);
  EXPECT_EQ(log.count("Finished directory scan."), 0U);
  EXPECT_FALSE(sheet.shown);
}

TEST_F(ViewIndexScanTest, anIndexThatFindsNothingEndsAtOnce) {
  startShow();
  beginScan();
  run(Seconds{0.26});
  EXPECT_FALSE(view->queryIsInProgress());
  EXPECT_TRUE(log.has("Finished spotlight search; num images from query = 0  (id = " + identity() + ")",
                      LogLevel::Information));
  EXPECT_EQ(sheet.count(), "0");
  EXPECT_THAT(view->imageFiles(), IsEmpty());
}

TEST_F(ViewIndexScanTest, theQueryEndsWithTheView) {
  startShow();
  index.gathering = true;
  beginScan();
  view.reset();
  EXPECT_EQ(index.stops, 1);
  loop.runFor(std::chrono::seconds(5));
}

// --- Folders behind links ---

struct ViewAliasScanTest : ViewScanTest {
  ViewAliasScanTest() {
    writePictures({"a.jpg"});
    elsewhere.write("b.jpg", "x");
    third.write("c.jpg", "x");
    std::filesystem::create_directory_symlink(elsewhere.path(), pictureFolder / "link");
    startShow();
  }
  TemporaryFolder elsewhere;
  TemporaryFolder third;
};

TEST_F(ViewAliasScanTest, asksWithTheNameOfTheFolder) {
  beginScan();
  runUntilAsked();
  const std::string name = elsewhere.path().substr(elsewhere.path().rfind('/') + 1);
  EXPECT_EQ(chooser.asked[0].message, "The scan encountered an alias pointing to folder \"" + name +
                                          "\"\nClick Include if you want Lumivane to include this folder");
  EXPECT_EQ(chooser.asked[0].confirmLabel, "Include");
  EXPECT_EQ(chooser.asked[0].startFolder, "/home/me");
  EXPECT_TRUE(log.has("Getting permission for alias: " + pictureFolder / "link", LogLevel::Information));
  chooser.answer({0, {}});
  runScan();
  EXPECT_TRUE(log.has("   user denied (response = 0)", LogLevel::Information));
  EXPECT_EQ(sheet.count(), "1   (# alias dirs = 0)");
}

TEST_F(ViewAliasScanTest, tellsHowFarItHasGotFourTimesASecond) {
  beginScan();
  runUntilAsked();
  log.clear();
  run(Seconds{1.01});
  const std::size_t lines =
      log.count("num images so far = 0 ...\n") + log.count("num images so far = 1 ...\n");
  EXPECT_EQ(lines, 4U);
  EXPECT_TRUE(sheet.count() == "0" || sheet.count() == "1");
  EXPECT_TRUE(sheet.spinning);
  chooser.answer({0, {}});
  runScan();
  EXPECT_FALSE(sheet.spinning);
}

TEST_F(ViewAliasScanTest, walksWhatWasAllowedEvenIfItIsAnotherFolder) {
  beginScan();
  runUntilAsked();
  chooser.answer({1, third.path()});
  runScan();
  std::vector<std::string> expected{pictureFolder / "a.jpg", third / "c.jpg"};
  EXPECT_THAT(view->imageFiles(), testing::UnorderedElementsAreArray(expected));
  EXPECT_EQ(sheet.count(), "2   (# alias dirs = 1)");
  EXPECT_EQ(stored().directoryBookmarks_.size(), 2U);
}

TEST_F(ViewAliasScanTest, aDialogThatNobodyHasIsADenial) {
  folderChooser = nullptr;
  start();
  scan();
  EXPECT_EQ(sheet.count(), "1   (# alias dirs = 0)");
}

TEST_F(ViewAliasScanTest, quittingWithTheQuestionOpenDoesNotHang) {
  beginScan();
  runUntilAsked();
  view.reset();
  chooser.answer({1, elsewhere.path()});  // too late
  loop.runFor(std::chrono::seconds(5));
}

TEST_F(ViewAliasScanTest, quittingBeforeTheQuestionIsPutDoesNotHang) {
  beginScan();
  ASSERT_TRUE(log.waitForStarting("Getting permission"));
  view.reset();
  loop.runFor(std::chrono::seconds(5));
  EXPECT_TRUE(chooser.asked.empty());
}

// --- Another display while it runs ---

TEST_F(ViewAliasScanTest, isBrokenOffWhenTheWindowMovesToAnotherDisplay) {
  displays.all.push_back({2, "Projector", {}, 1});
  storeList({"/projector/a.jpg"}, "Projector");
  beginScan();
  runUntilAsked();
  const std::string list = listFile();
  window.display = 2;
  view->viewWillMoveToWindow(&window);
  EXPECT_TRUE(log.has("Scan broken off: the window stands on another display.", LogLevel::Error));
  EXPECT_FALSE(view->queryIsInProgress());
  EXPECT_TRUE(sheet.enabled(applyView_));
  EXPECT_FALSE(sheet.spinning);
  EXPECT_TRUE(sheet.shown);
  chooser.answer({1, elsewhere.path()});
  run(Seconds{5});
  EXPECT_EQ(listFile(), list);
  EXPECT_EQ(listFile("Projector"), "/projector/a.jpg");
  EXPECT_EQ(log.count("Finished directory scan."), 0U);
}

TEST_F(ViewScanTest, whatIsNotWrittenYetIsNotWrittenForAnotherDisplay) {
  writePictures({"a.jpg"});
  displays.all.push_back({2, "Projector", {}, 1});
  startShow();
  const std::string list = listFile();
  queues.jobTime = std::chrono::seconds(100);
  beginScan();
  while (log.countStartingWith("sheet: ended") == 0) run(Seconds{0.25});
  window.display = 2;
  view->viewWillMoveToWindow(&window);
  run(Seconds{200});
  EXPECT_EQ(listFile(), list);
  EXPECT_FALSE(view->queryIsInProgress());
}

}  // namespace
}  // namespace lumivane

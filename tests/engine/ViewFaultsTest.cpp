// Faults of the world around a show, one at a time and at every moment: none stops it, none costs what was stored.

#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

// --- Every write fails once ---

class EveryWriteFails : public ViewTest, public testing::WithParamInterface<const char*> {
 protected:
  EveryWriteFails() {
    configure([](DisplaySettings& s) {
      s.dontRandomize_ = true;
      s.enableDeleteAtRuntime_ = true;
    });
    listPictures(20);
    for (std::size_t i = 0; i < 20; ++i) files.content[path(i)] = "picture";
    stored_ = files.content;
  }

  // Some minutes of a show that writes everything there is to write.
  void playShow() {
    start();
    run(Seconds{35});
    press(kDeleteCharacter);
    run(Seconds{15});
    view->editSettings().fontSize_ += 1;
    view->saveConfig();
    view->stopAnimation();
    view->startAnimation();
    press(kDeleteCharacter);
    run(Seconds{25});
    view->editSettings().fontSize_ += 1;
    view->saveConfig();
    view->saveLastRunInfo();
  }

  // What the log says when this file cannot be written.
  static std::string lineOf(const std::string& file) {
    if (file.starts_with("/config/")) return "writing defaults failed! (display name = Color LCD)";
    if (file.starts_with("/data/LumivaneImageList.")) return "saving image list failed: ";
    return "Couldn't write last run info to file: " + file + "!\nerror: ";
  }

  std::map<std::string, std::string> stored_;
};

TEST_P(EveryWriteFails, AndTheShowGoesOn) {
  int failAt = 0;
  bool failed = true;
  for (; failed; ++failAt) {
    ASSERT_LT(failAt, 1000);
    files.content = stored_;
    log.clear();
    failed = false;
    int calls = 0;
    std::string file;
    std::optional<std::string> before;
    files.fault = [&](const std::string& path_) -> std::optional<std::string> {
      if (calls++ != failAt) return std::nullopt;
      failed = true;
      file = path_;
      const auto found = files.content.find(path_);
      if (found != files.content.end()) before = found->second;
      return GetParam();
    };
    // Right after the failure the old content stands there, whole.
    std::optional<bool> whole;
    files.touched = [&](const std::string&) {
      if (!failed || whole) return;
      const auto found = files.content.find(file);
      whole = (found != files.content.end()) == before.has_value() && (!before || found->second == *before);
    };
    playShow();
    files.touched = nullptr;
    files.fault = nullptr;
    EXPECT_FALSE(view->filename().empty());
    const std::string last = view->filename();
    runUntilChange();
    EXPECT_NE(view->filename(), last);
    if (!failed) break;
    EXPECT_TRUE(whole.value_or(true)) << file;
    EXPECT_EQ(log.countStartingWith(lineOf(file)), 1U) << "write " << failAt << " of " << file;
    // The next write of the same file holds everything: nothing is lost for good.
    view->saveConfig();
    view->saveImageList();
    view->saveLastRunInfo();
    loop.runPending();
    RecordingLog quiet;
    EXPECT_EQ(loadImageList(files, "/data/" + imageListFileName("Color LCD"), quiet), view->imageFiles());
    SettingsStore again{files, log, folders.config};
    EXPECT_EQ(PreferencesStore(again, log).load("Color LCD"), view->settings());
  }
  EXPECT_GE(failAt, 10) << "settings, list and record were written several times";
}

INSTANTIATE_TEST_SUITE_P(Reasons, EveryWriteFails,
                         testing::Values("No space left on device", "Input/output error",
                                         "Permission denied"));

TEST_F(ViewTest, aDiskThatStaysFullStopsNothing) {
  listPictures(5);
  files.fault = [](const std::string&) -> std::optional<std::string> { return "No space left on device"; };
  const auto before = files.content;
  start();
  for (int i = 0; i < 20; ++i) runUntilChange();
  EXPECT_EQ(files.content, before);
}

// --- The clock of the wall ---

TEST_F(ViewTest, aWallClockSetByADayInBothDirectionsCostsNoPeriod) {
  listPictures(30);
  start();
  beat();
  for (const int hours : {24, -24, -48, 48, 24 * 365, -24 * 365}) {
    run(Seconds{3});
    clock.jumpWallTime(std::chrono::hours(hours));
    const std::string shown = view->filename();
    const MediaTime before = clock.now();
    runUntilChange(Seconds{11});
    EXPECT_NE(view->filename(), shown);
    EXPECT_LE(clock.now() - before, std::chrono::milliseconds(7'050));
  }
}

// The monotonic clock either stands during sleep, or jumps with it: in both cases the next picture comes within a
// period, and only one.
TEST_F(ViewTest, aDayOfSleepCostsAtMostOnePeriod) {
  listPictures(30);
  start();
  beat();
  run(Seconds{4});
  std::string shown = view->filename();
  clock.jumpWallTime(std::chrono::hours(24));  // it stood
  runUntilChange(Seconds{6.1});
  run(Seconds{4});
  shown = view->filename();
  clock.advance(std::chrono::hours(24));  // it went on
  run(Seconds{0.04});
  EXPECT_NE(view->filename(), shown);
  shown = view->filename();
  run(Seconds{9.9});
  EXPECT_EQ(view->filename(), shown) << "what was missed is not made up for";
  run(Seconds{0.2});
  EXPECT_NE(view->filename(), shown);
}

// --- Pictures that go, change and come again ---

TEST_F(ViewTest, aFolderThatIsRenamedAndNamedBackShowsItsPicturesAgain) {
  configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
  listPictures(30);
  start();
  run(Seconds{15});
  const auto all = std::exchange(decoder.pictures, {});
  run(Seconds{200});
  EXPECT_GT(log.count("Several images in a row are gone!"), 0U);
  EXPECT_GT(log.countStartingWith("Image gone: /pictures/"), 0U);
  EXPECT_EQ(view->imageFiles().size(), 30U) << "nothing is struck off the list";
  decoder.pictures = all;
  const std::size_t complaints = log.count("Several images in a row are gone!");
  run(Seconds{30});
  EXPECT_TRUE(view->currentLayer()->properties().contents);
  EXPECT_LE(log.count("Several images in a row are gone!"), complaints + 1);
}

TEST_F(ViewTest, aPictureCutShortWhileItIsDecodedIsPassedOver) {
  configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
  listPictures(10);
  start();
  beat();
  decoder.touched = [this](const std::string& opened) {
    if (opened == path(2)) decoder.pictures[opened].decodes = false;  // truncated after it was opened
    if (opened == path(3)) decoder.pictures[opened].properties = {};  // replaced by something without a size
    if (opened == path(4)) decoder.pictures.erase(opened);            // deleted
  };
  run(Seconds{10.1});
  EXPECT_EQ(view->filename(), path(5)) << "at its time, as if the others had not been there";
  EXPECT_TRUE(log.has("Image loading failed: " + path(2), LogLevel::Error));
}

// --- Few pictures and many ---

TEST_F(ViewTest, noPictureIsSaidOncePerPeriod) {
  listPictures(0);
  start();
  run(Seconds{35});
  EXPECT_EQ(log.countStartingWith("No images. Please choose directory other than "), 4U);
}

TEST_F(ViewTest, onePictureIsShownAgainAndAgain) {
  listPictures(1);
  start();
  run(Seconds{65});
  EXPECT_EQ(view->filename(), path(0));
  EXPECT_GE(decoder.decodes[path(0)], 6);
  press(kLeftArrowCharacter);
  press(kRightArrowCharacter);
  run(Seconds{20});
  EXPECT_EQ(view->filename(), path(0));
}

TEST_F(ViewTest, theSamePictureAThousandTimesIsAThousandEntries) {
  configure([](DisplaySettings& s) {
    s.dontRandomize_ = true;
    s.enableDeleteAtRuntime_ = true;
  });
  decoder.pictures[path(0)] = pictureOf(400, 300);
  files.content[path(0)] = "picture";
  storeList(std::vector<std::string>(1000, path(0)));
  start();
  beat();
  for (int i = 0; i < 30; ++i) run(Seconds{10.02});
  EXPECT_EQ(view->imageIndex(), 31U);
  press(kDeleteCharacter);
  run(Seconds{0.1});
  EXPECT_EQ(view->imageFiles().size(), 999U) << "one entry went";
  EXPECT_EQ(trash.trashed.size(), 1U);
}

TEST_F(ViewTest, aMillionPicturesAreShownInTime) {
  constexpr std::size_t kMillion = 1'000'000;
  for (std::size_t i = 0; i < 20; ++i) decoder.pictures[path(i)] = pictureOf(400, 300);
  std::vector<std::string> paths;
  for (std::size_t i = 0; i < kMillion; ++i) paths.push_back(path(i % 20));
  storeList(paths);
  start();
  EXPECT_TRUE(log.has("num images from config = 1000000", LogLevel::Information));
  beat();
  for (int i = 0; i < 10; ++i) run(Seconds{10.02});
  EXPECT_EQ(view->imagesNotYetShown().size(), kMillion - 11) << "eleven were shown";
}

// --- Little memory ---

TEST_F(ViewTest, littleMemoryShrinksTheHistoryAndTheShowGoesOn) {
  listPictures(60);
  start();
  beat();
  for (int i = 0; i < 15; ++i) runUntilChange();
  ASSERT_EQ(view->history().entries().size(), 12U);
  memory.megabytes = 60;
  for (int i = 0; i < 15; ++i) runUntilChange();
  const auto kept = [this] {
    const auto& entries = view->history().entries();
    return std::count_if(entries.begin(), entries.end(),
                         [](const HistoryEntry& e) { return e.img != nullptr; });
  };
  EXPECT_LE(kept(), 3);
  EXPECT_EQ(decoder.longestSide, 1920) << "and pictures are decoded smaller";
  memory.fails = true;
  for (int i = 0; i < 5; ++i) runUntilChange();
  EXPECT_LE(kept(), 3);
  memory.fails = false;
  memory.megabytes = 8000;
  for (int i = 0; i < 20; ++i) runUntilChange();
  EXPECT_EQ(kept(), 12);
  EXPECT_EQ(decoder.longestSide, kThumbnailMaxPixelSize);
}

}  // namespace
}  // namespace lumivane

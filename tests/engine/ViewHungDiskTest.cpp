// The pictures' disk is gone, asleep or hangs: the main thread never asks it anything, and the pictures come again by
// themselves.
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

// Queues that tell whether one of their jobs is running.
class WatchedQueues final : public SerialQueues {
 public:
  explicit WatchedQueues(SerialQueues& queues) : queues_(queues) {}
  [[nodiscard]] std::unique_ptr<SerialQueue> make(const std::string& name) override {
    return std::make_unique<Queue>(*this, queues_.make(name));
  }
  bool atWork = false;
  bool hang = false;  // what is handed over now is not begun
  std::vector<std::pair<SerialQueue*, Job>> held;

 private:
  struct Queue final : SerialQueue {
    Queue(WatchedQueues& all, std::unique_ptr<SerialQueue> real) : queues(all), queue(std::move(real)) {}
    void async(Job job) override {
      Job watched = [&all = queues, job = std::move(job)] {
        all.atWork = true;
        job();
        all.atWork = false;
      };
      if (queues.hang) return queues.held.emplace_back(queue.get(), std::move(watched)), void();
      queue->async(std::move(watched));
    }
    WatchedQueues& queues;
    std::unique_ptr<SerialQueue> queue;
  };
  SerialQueues& queues_;
};

// Calls that end at once, or only when the test says so.
class HeldCalls final : public BoundedCalls {
 public:
  bool hang = false;
  std::vector<Job> held;
  int calls = 0;
  [[nodiscard]] bool runWithin(Nanoseconds /*limit*/, Job job) override {
    ++calls;
    if (hang) return held.push_back(std::move(job)), false;
    job();
    return true;
  }
  void wakeUp() {
    hang = false;
    for (const Job& job : std::exchange(held, {})) job();
  }
};

struct ViewHungDiskTest : SheetViewTest {
  WatchedQueues watched{queues};
  HeldCalls calls;
  std::vector<std::string> touchedOnMain;

  ViewHungDiskTest() {
    boundedCalls = &calls;
    configure([](DisplaySettings& s) {
      s.dontRandomize_ = true;
      s.enableDeleteAtRuntime_ = true;
      s.durationPerImage_ = 10;
    });
    listPictures(10);
    for (std::size_t i = 0; i < 10; ++i) files.content[path(i)] = "picture";
    const auto note = [this](const std::string& path_) {
      if (path_.starts_with("/pictures/") && !watched.atWork) touchedOnMain.push_back(path_);
    };
    files.touched = note;
    decoder.touched = note;
  }
  // The view must go before the queues that it still uses.
  void TearDown() override {
    watched.held.clear();
    SheetViewTest::TearDown();
  }
  void startWatched() {
    settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
    view = LumivaneView::initWithFrame({{0, 0}, window.rectangle.size}, false, hostWith(loop, watched));
    view->viewWillMoveToWindow(&window);
    view->viewDidEndLiveResize();
    view->setWindowResizingHappened(false);
  }
  void hang() { watched.hang = calls.hang = true; }
  void answerAgain() {
    watched.hang = false;
    for (auto& [queue, job] : std::exchange(watched.held, {})) queue->async(std::move(job));
    calls.wakeUp();
  }
};

TEST_F(ViewHungDiskTest, theMainThreadTouchesNoPicture) {
  decoder.pictures.erase(path(1));
  decoder.pictures.erase(path(5));
  startWatched();
  run(Seconds{25});
  for (const char32_t key : {kDeleteCharacter, kReturnCharacter, kRightArrowCharacter, kLeftArrowCharacter,
                             kDeleteCharacter, U'i', U'b', U'b', U'f'}) {
    press(key);
    run(Seconds{3});
  }
  trash.failure = "no trash";
  press(kDeleteCharacter);
  run(Seconds{40});
  view->editDisplay(0);
  actions().closeSheet();
  view->viewWillMoveToWindow(&window);
  run(Seconds{25});
  EXPECT_EQ(touchedOnMain, std::vector<std::string>{});
  EXPECT_FALSE(trash.trashed.empty());
  EXPECT_GT(decoder.decodes.size(), 5U);
}

TEST_F(ViewHungDiskTest, itHangsFromTheStartOnAndComesBack) {
  hang();
  startWatched();
  EXPECT_EQ(view->mainDirectoryLocation(), pictureFolder.path()) << "taken to be where it was";
  EXPECT_TRUE(log.has("The pictures' folders do not answer yet.", LogLevel::Error));
  EXPECT_FALSE(log.has("Change pics folder in Preferences for monitor Color LCD", LogLevel::Error));
  run(Seconds{60});
  EXPECT_TRUE(view->filename().empty());
  EXPECT_EQ(log.countStartingWith("Loading image in main thread: "), 1U);
  answerAgain();
  run(Seconds{0.1});
  EXPECT_EQ(view->filename(), path(1)) << "by itself and at once";
  EXPECT_EQ(log.count("Directory location = " + pictureFolder.path()), 2U);
  EXPECT_EQ(touchedOnMain, std::vector<std::string>{});
}

TEST_F(ViewHungDiskTest, itHangsInTheMiddleOfTheShowAndComesBack) {
  startWatched();
  run(Seconds{15});
  ASSERT_EQ(view->filename(), path(2));
  hang();
  press(kDeleteCharacter);
  press(kReturnCharacter);
  run(Seconds{45});
  EXPECT_EQ(view->filename(), path(3)) << "it had been prefetched; nothing comes after it";
  EXPECT_GE(log.countStartingWith("Background thread still loading: "), 2U);
  press(kLeftArrowCharacter);
  run(Seconds{1});
  EXPECT_EQ(view->filename(), path(2)) << "the history needs no disk";
  answerAgain();
  run(Seconds{30});
  EXPECT_EQ(trash.trashed, std::vector{path(2)});
  EXPECT_EQ(view->imageFiles().size(), 9U);
  const std::string shown = view->filename();
  runUntilChange();
  EXPECT_NE(view->filename(), shown);
}

TEST_F(ViewHungDiskTest, whatTheFoldersAnswerAfterAllCounts) {
  configure([](DisplaySettings& s) {
    RecordingLog quiet;
    const TemporaryFolder gone;
    s.directoryBookmarks_ = createBookmarks(std::vector{gone.path()}, quiet).value();
  });
  hang();
  startWatched();
  EXPECT_TRUE(view->hasFolder());
  answerAgain();
  run(Seconds{0.1});
  EXPECT_FALSE(view->hasFolder());
  EXPECT_TRUE(log.has("Bookmark not resolvable!", LogLevel::Error));
  EXPECT_TRUE(log.has("Change pics folder in Preferences for monitor Color LCD", LogLevel::Error));
}

TEST_F(ViewHungDiskTest, aLateAnswerDoesNotUndoWhatTheUserChose) {
  hang();
  startWatched();
  view->setMainDirectoryLocation("/elsewhere");
  answerAgain();
  run(Seconds{0.1});
  EXPECT_EQ(view->mainDirectoryLocation(), "/elsewhere");
}

TEST_F(ViewHungDiskTest, anAnswerToAnEarlierQuestionIsNotTold) {
  hang();
  startWatched();
  view->viewWillMoveToWindow(&window);
  EXPECT_EQ(calls.calls, 2);
  answerAgain();
  run(Seconds{0.1});
  EXPECT_EQ(log.count("Directory location = " + pictureFolder.path()), 3U) << "two assumed, one answered";
}

TEST_F(ViewHungDiskTest, anAnswerAfterTheEndIsNotHeard) {
  hang();
  startWatched();
  watched.held.clear();
  view.reset();
  calls.wakeUp();
  loop.runFor(std::chrono::seconds(1));
}

TEST_F(ViewHungDiskTest, folderThatAnswersIsAskedOnce) {
  startWatched();
  run(Seconds{5});
  EXPECT_EQ(log.count("Directory location = " + pictureFolder.path()), 1U);
  EXPECT_EQ(calls.calls, 1);
}

TEST_F(ViewHungDiskTest, aFileDroppedFromADiskThatHangsIsTakenWhenItAnswers) {
  TemporaryFolder other;
  const std::string file = other.write("a.jpg", "x");
  start();
  calls.hang = true;
  view->preferencesSheet()->fileDropped(file);
  loop.runPending();
  EXPECT_FALSE(view->queryIsInProgress());
  calls.wakeUp();
  loop.runPending();
  EXPECT_TRUE(view->queryIsInProgress());
  runScan();
}

TEST_F(ViewHungDiskTest, aFileDroppedOnAWindowThatIsGoneByThenIsForgotten) {
  start();
  calls.hang = true;
  view->preferencesSheet()->fileDropped(pictureFolder.path());
  view.reset();
  calls.wakeUp();
  loop.runPending();
}

}  // namespace
}  // namespace lumivane

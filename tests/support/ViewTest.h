// A view at work in virtual time: pictures, settings and a window as a test wants them, and its heartbeat.
#pragma once

#include <functional>
#include <set>

#include "collection/FolderBookmarks.h"
#include "collection/ImageListFile.h"
#include "settings/DisplayFileName.h"
#include "settings/PreferencesStore.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {

class ViewTest : public testing::Test {
 protected:
  using Change = std::function<void(DisplaySettings&)>;

  ViewTest() {
    folders.config = "/config";
    folders.data = "/data";
    folders.pictures = "/home/Pictures";
    // Still pictures that change without a fade are the simplest show; tests ask for more.
    configure([](DisplaySettings& s) {
      s.kenBurnsIsOn_ = false;
      s.crossDissolve_ = false;
      s.durationPerImage_ = 10;
      s.excludeSize_ = 1;
    });
  }

  // Before the doubles of a test's own, which the view still uses when it goes.
  void TearDown() override { view.reset(); }

  // Stores settings for a display, as if an earlier run had.
  void configure(const Change& change, const std::string& display = "Color LCD") {
    RecordingLog quiet;
    SettingsStore store{files, quiet, folders.config};
    PreferencesStore preferences{store, quiet};
    DisplaySettings settings = preferences.load(display);
    if (withFolder)
      settings.directoryBookmarks_ = createBookmarks(std::vector{pictureFolder.path()}, quiet).value();
    change(settings);
    preferences.save(settings);
  }

  // Fills the stored list with pictures p0.jpg, p1.jpg, ... that all can be shown.
  void listPictures(std::size_t count, std::int32_t width = 4000, std::int32_t height = 3000) {
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < count; ++i) {
      paths.push_back(path(i));
      decoder.pictures[path(i)] = pictureOf(width, height);
    }
    storeList(paths);
  }
  void storeList(const std::vector<std::string>& paths, const std::string& display = "Color LCD") {
    RecordingLog quiet;
    saveImageList(files, folders.data + "/" + imageListFileName(fileNameToken(display)), ImageList(paths),
                  quiet);
  }
  [[nodiscard]] static std::string path(std::size_t i) { return "/pictures/p" + std::to_string(i) + ".jpg"; }

  // What the host does at start.
  void makeView() {
    view.reset();
    settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
    view = LumivaneView::initWithFrame({{0, 0}, window.rectangle.size}, false, host());
  }
  void start() {
    makeView();
    view->viewWillMoveToWindow(&window);
    view->viewDidEndLiveResize();
    view->setWindowResizingHappened(false);
  }
  [[nodiscard]] Host host() { return hostWith(loop, queues); }
  [[nodiscard]] Host hostWith(MainLoop& mainLoop, SerialQueues& serialQueues) {
    return {.clock = clock,
            .mainLoop = mainLoop,
            .queues = serialQueues,
            .log = log,
            .displays = displays,
            .settings = *settingsStore,
            .files = files,
            .decoder = decoder,
            .random = random,
            .memory = memory,
            .text = text,
            .geocoder = withGeocoder ? &geocoder : nullptr,
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
            .helpPanel = helpPanel,
            .workspace = workspace,
            .metadataQuery = metadataQuery,
            .photoLibrary = photoLibrary,
            .boundedCalls = boundedCalls};
  }

  // Lets time pass with the heartbeat of the real program, 50 a second.
  void run(Seconds span) {
    const MediaTime end = clock.now() + wholeNanoseconds(span);
    while (clock.now() < end) {
      loop.runFor(std::min<Nanoseconds>(std::chrono::milliseconds(20), end - clock.now()));
      beat();
    }
  }
  void beat() {
    view->mainLayer().finishAnimations(mediaSeconds(clock.now()));
    view->animateOneFrame();
    if (view->prefetchSlot().full()) return;
    loop.runPending();  // a queue that answers at once
    if (view->prefetchSlot().full()) view->animateOneFrame();
  }
  // Runs until the next picture stands on the screen.
  void runUntilChange(Seconds atMost = Seconds{120}) {
    const Layer* before = view->currentLayer();
    const MediaTime end = clock.now() + wholeNanoseconds(atMost);
    while (view->currentLayer() == before && clock.now() < end) run(Seconds{0.02});
    ASSERT_NE(view->currentLayer(), before) << "no change within the time";
  }
  // Runs until an entry with this text appears in the log.
  void runUntilMessage(const std::string& text_, Seconds atMost = Seconds{120}) {
    const std::size_t before = log.count(text_);
    const MediaTime end = clock.now() + wholeNanoseconds(atMost);
    while (log.count(text_) == before && clock.now() < end) run(Seconds{0.02});
    ASSERT_GT(log.count(text_), before) << "not said within the time: " << text_;
  }
  [[nodiscard]] Seconds now() const { return mediaSeconds(clock.now()); }

  void press(char32_t character) { view->keyDown({character, kNoModifiers, false}); }

  bool withFolder = true;
  TemporaryFolder pictureFolder;
  UserFolders folders;
  VirtualClock clock;
  VirtualMainLoop loop{clock};
  VirtualSerialQueues queues{loop};
  RecordingLog log;
  FakeDisplays displays;
  MemoryFiles files;
  std::unique_ptr<SettingsStore> settingsStore;
  FakeImageDecoder decoder;
  ScriptedRandom random;
  FakeFreeMemory memory;
  FakeTextRenderer text;
  bool withGeocoder = true;
  FakeGeocoder geocoder;
  FakeApplication application;
  FakeFileBrowser fileBrowser;
  FakeTrash trash{files};
  FakeSounds sounds;
  SharedTables tables;
  FakeWindow window;
  // Absent unless a test sets them, before it makes the view.
  ConfigureSheet* configureSheet = nullptr;
  FolderChooser* folderChooser = nullptr;
  HelpPanel* helpPanel = nullptr;
  Workspace* workspace = nullptr;
  MetadataQuery* metadataQuery = nullptr;
  const PhotoLibrary* photoLibrary = nullptr;
  BoundedCalls* boundedCalls = nullptr;
  std::unique_ptr<LumivaneView> view;
};

}  // namespace lumivane

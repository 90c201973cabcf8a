// Albums of the photo library: their table, their choice, their collection.
#include "tests/support/FakePhotoLibrary.h"
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

using enum SheetControl;
using testing::ElementsAre;

constexpr const char* kPackage = "/home/me/Pictures/Mine.photoslibrary/";

std::string inPackage(const std::string& name) {
  return kPackage + name;
}

struct SheetAlbumsTest : SheetViewTest {
  SheetAlbumsTest() {
    photoLibrary = &library;
    add("Sea", {{.path = inPackage("s2.jpg")}, {.path = inPackage("s1.jpg")}});
    add("Town", {{.path = inPackage("t.jpg")}});
  }
  void add(const std::string& name, std::vector<AlbumPicture> pictures) {
    library.list.albums.push_back({name, "id of " + name, pictures.size()});
    library.members["id of " + name] = std::move(pictures);
  }
  void startWithAlbums() {
    startShow();
    loop.runPending();
  }
  void pick(std::optional<std::size_t> row) { choose(albumView_, row, &SheetActions::selectAlbum); }
  void collect(std::size_t row) {
    pick(row);
    close();
    runScan();
  }
  [[nodiscard]] bool folderControlsAreEnabled() const {
    const std::vector<SheetControl> all{useSpotlightView_, changeDirectoryView_, excludekBView_,
                                        skipPatternsView_, excludekBLabelView_,  skipPatternsLabelView_};
    const bool first = sheet.enabled(all.front());
    for (const SheetControl control : all) EXPECT_EQ(sheet.enabled(control), first);
    return first;
  }
  FakePhotoLibrary library;
};

TEST_F(SheetAlbumsTest, areReadAtTheStart) {
  start();
  EXPECT_EQ(queues.names, (std::vector<std::string>{"LumivaneAlbumQueue", "LumivanePrefetchQueue"}));
  EXPECT_TRUE(sheet.items[albumView_].empty()) << "not yet";
  loop.runPending();
  EXPECT_THAT(sheet.items[albumView_], ElementsAre("Sea", "Town"));
  EXPECT_TRUE(log.has("album name = Sea", LogLevel::Information));
  EXPECT_TRUE(log.has("num albums = 2", LogLevel::Information));
}

TEST_F(SheetAlbumsTest, withoutALibraryThereAreNone) {
  photoLibrary = nullptr;
  start();
  EXPECT_TRUE(log.has("mediaLibrary is NULL!", LogLevel::Error));
  tick(useAlbumView_, true, &SheetActions::setUseAlbum);
  EXPECT_TRUE(log.has("No albums were found at startup time!", LogLevel::Error));
  EXPECT_FALSE(sheet.on[useAlbumView_]);
  EXPECT_TRUE(sheet.on[useDirectoryTreeView_]);
  EXPECT_TRUE(folderControlsAreEnabled());
  EXPECT_FALSE(settings().useAlbum_);
  EXPECT_THAT(sheet.items[albumView_], ElementsAre(" ")) << "one blank row";
  pick(0);
  EXPECT_FALSE(settings().useAlbum_) << "no album stands behind the blank row";
  EXPECT_TRUE(chooserEnabled());
}

TEST_F(SheetAlbumsTest, theRadioButtonAloneCallsForNoRescan) {
  startWithAlbums();
  tick(useAlbumView_, true, &SheetActions::setUseAlbum);
  EXPECT_TRUE(settings().useAlbum_);
  EXPECT_TRUE(sheet.on[useAlbumView_]);
  EXPECT_FALSE(sheet.on[useDirectoryTreeView_]);
  EXPECT_FALSE(folderControlsAreEnabled());
  EXPECT_TRUE(sheet.enabled(excludeSizeView_)) << "pixels count for albums as well";
  EXPECT_TRUE(chooserEnabled());
}

TEST_F(SheetAlbumsTest, aClickChoosesAndCallsForARescanOnce) {
  startWithAlbums();
  pick(1);
  EXPECT_TRUE(settings().useAlbum_);
  EXPECT_EQ(settings().selectedAlbum_, "Town");
  EXPECT_TRUE(rescanIsDue());
  EXPECT_FALSE(folderControlsAreEnabled());
  sheet.texts[num_images_] = "5";
  pick(1);
  EXPECT_EQ(sheet.count(), "5");
}

TEST_F(SheetAlbumsTest, noSelectionIsNoAlbum) {
  startWithAlbums();
  pick(1);
  pick(std::nullopt);
  EXPECT_FALSE(settings().useAlbum_);
  EXPECT_EQ(settings().selectedAlbum_, "");
  pick(2);
  EXPECT_FALSE(settings().useAlbum_) << "the row after the last";
}

TEST_F(SheetAlbumsTest, backToFoldersCallsForARescan) {
  startWithAlbums();
  actions().setUseDirectoryTree();
  EXPECT_TRUE(chooserEnabled()) << "folders they were already";
  pick(0);
  actions().setUseDirectoryTree();
  EXPECT_FALSE(settings().useAlbum_);
  EXPECT_TRUE(folderControlsAreEnabled());
  EXPECT_TRUE(rescanIsDue());
}

TEST_F(SheetAlbumsTest, closedWithoutAnAlbumItRevertsToFolders) {
  startWithAlbums();
  tick(useAlbumView_, true, &SheetActions::setUseAlbum);
  close();
  EXPECT_TRUE(log.has("You have not chosen any Photos album - reverting to folder.", LogLevel::Information));
  EXPECT_EQ(view->firstLine(), "You have not chosen any Photos album - reverting to folder.");
  EXPECT_FALSE(settings().useAlbum_);
  EXPECT_TRUE(folderControlsAreEnabled());
  EXPECT_FALSE(sheet.shown);
}

TEST_F(SheetAlbumsTest, aRescanNamesTheAlbum) {
  startWithAlbums();
  pick(0);
  actions().rescanDirectory();
  EXPECT_TRUE(log.has("Rescan album: Sea", LogLevel::Information));
}

// --- The collection ---

TEST_F(SheetAlbumsTest, picturesComeInTheAlbumsOrder) {
  startWithAlbums();
  collect(0);
  EXPECT_THAT(view->imageFiles(), ElementsAre(inPackage("s2.jpg"), inPackage("s1.jpg")));
  EXPECT_EQ(listFile(), inPackage("s2.jpg") + "\n" + inPackage("s1.jpg"));
  EXPECT_EQ(view->mainDirectoryLocation(), kPackage);
  EXPECT_TRUE(log.has(std::string("Album images path prefix = ") + kPackage + ".", LogLevel::Information));
  EXPECT_EQ(view->imagesNotYetShown().size(), 2U);
  EXPECT_TRUE(stored().useAlbum_);
  EXPECT_EQ(stored().selectedAlbum_, "Sea");
  EXPECT_FALSE(sheet.shown);
  EXPECT_EQ(sheet.count(), "2");
  EXPECT_TRUE(sheet.enabled(applyView_));
  EXPECT_FALSE(sheet.spinning);
}

TEST_F(SheetAlbumsTest, endsInTheOrderOfAFolderWithoutItsNewCycle) {
  startWithAlbums();
  const ImageIndex before = view->imageIndex();
  pick(0);
  log.clear();
  close();
  runScan();
  std::vector<std::string> said;
  for (const auto& entry : log.entries()) {
    for (const char* beginning :
         {"stop animation", "Album images path", "writing defaults", "saving image list", "start animation"})
      if (entry.text.starts_with(beginning)) said.emplace_back(beginning);
  }
  EXPECT_THAT(said, ElementsAre("stop animation", "Album images path", "writing defaults",
                                "saving image list", "start animation"));
  EXPECT_EQ(view->imageIndex(), before);
  EXPECT_FALSE(changeIsDue());
}

TEST_F(SheetAlbumsTest, hiddenPicturesAndFilmsAreLeftOut) {
  add("Mixed", {{.path = inPackage("1.jpg")},
                {.path = inPackage("2.jpg"), .hidden = true},
                {.path = inPackage("3.mov"), .mediaType = MediaType::Movie},
                {.path = inPackage("4.jpg")}});
  startWithAlbums();
  collect(2);
  EXPECT_THAT(view->imageFiles(), ElementsAre(inPackage("1.jpg"), inPackage("4.jpg")));
}

TEST_F(SheetAlbumsTest, anEmptyAlbumIsSavedAsOne) {
  add("Nothing", {});
  startWithAlbums();
  collect(2);
  EXPECT_TRUE(view->imageFiles().empty());
  EXPECT_EQ(listFile(), "");
  EXPECT_EQ(log.countStartingWith("start animation"), 1U);
}

TEST_F(SheetAlbumsTest, picturesOutsideAnyPackageGiveAnEmptyCollectionThatIsNotSaved) {
  add("Elsewhere", {{.path = "/srv/a.jpg"}});
  startWithAlbums();
  const std::string list = listFile();
  collect(2);
  EXPECT_TRUE(log.has("Could not find '.photoslibrary' in path of photos!", LogLevel::Error));
  EXPECT_TRUE(view->imageFiles().empty());
  EXPECT_EQ(listFile(), list);
  EXPECT_EQ(log.countStartingWith("start animation"), 1U);
  EXPECT_FALSE(sheet.shown);
}

TEST_F(SheetAlbumsTest, aLibraryThatCannotBeReadLeavesTheCollection) {
  startWithAlbums();
  const ImageList before = view->imageFiles();
  library.problem = "the library is locked";
  collect(0);
  EXPECT_TRUE(log.has("the library is locked", LogLevel::Error));
  EXPECT_EQ(view->imageFiles(), before);
  EXPECT_EQ(log.countStartingWith("start animation"), 1U);
}

TEST_F(SheetAlbumsTest, anAlbumThatIsNotThereSwitchesAlbumsOff) {
  startWithAlbums();
  pick(0);
  view->editSettings().selectedAlbum_ = "Gone";
  log.clear();
  close();
  EXPECT_TRUE(log.has("Could not find album: Gone!", LogLevel::Error));
  EXPECT_FALSE(settings().useAlbum_);
  EXPECT_EQ(settings().selectedAlbum_, "");
  EXPECT_FALSE(view->queryIsInProgress());
  EXPECT_EQ(log.countStartingWith("start animation"), 0U) << "closing the sheet restarts the show";
  EXPECT_TRUE(sheet.enabled(applyView_)) << "which must be possible";
  EXPECT_TRUE(folderControlsAreEnabled());
  close();
  EXPECT_EQ(log.countStartingWith("start animation"), 1U);
}

TEST_F(SheetAlbumsTest, aLibraryThatIsReadWhenTheViewGoesTellsNobody) {
  queues.jobTime = std::chrono::seconds(1);
  start();
  view.reset();
  loop.runFor(std::chrono::seconds(5));
  EXPECT_EQ(log.countStartingWith("num albums"), 0U);
}

TEST_F(SheetAlbumsTest, aDroppedFolderSwitchesAlbumsOff) {
  startWithAlbums();
  pick(0);
  view->preferencesSheet()->folderDropped("/srv/none");
  EXPECT_FALSE(settings().useAlbum_);
  EXPECT_TRUE(folderControlsAreEnabled());
  EXPECT_TRUE(log.has("Scan directory /srv/none  (id = " + identity() + ")", LogLevel::Information));
  runScan();
}

}  // namespace
}  // namespace lumivane

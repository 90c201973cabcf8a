// The choice of the folder of the pictures: by dialog and by dropping it.
#include "engine/FolderQuestions.h"
#include "tests/support/SheetViewTest.h"

namespace lumivane {
namespace {

using enum SheetControl;
using testing::ElementsAre;

struct SheetFoldersTest : SheetViewTest {
  SheetFoldersTest() { startShow(); }

  void choosesFolder(const std::string& folder, long response = 1) {
    actions().selectDirectory();
    chooser.answer({response, folder});
  }
  void drop(const std::string& folder) { view->preferencesSheet()->folderDropped(folder); }
};

TEST_F(SheetFoldersTest, theShowStopsForTheDialog) {
  actions().selectDirectory();
  EXPECT_TRUE(log.has("stop animation   (id = " + identity() + ")", LogLevel::Information));
  ASSERT_EQ(chooser.asked.size(), 1U);
  EXPECT_EQ(chooser.asked[0].startFolder, "/home/me");
  EXPECT_EQ(chooser.asked[0].message, "");
  EXPECT_EQ(chooser.asked[0].confirmLabel, "");
}

TEST_F(SheetFoldersTest, anotherFolderIsShownAndCallsForARescan) {
  choosesFolder("/srv/photos");
  EXPECT_EQ(view->mainDirectoryLocation(), "/srv/photos");
  EXPECT_EQ(sheet.texts[directoryPathView_], "/srv/photos");
  EXPECT_TRUE(log.has("User selected directory: /srv/photos", LogLevel::Information));
  EXPECT_TRUE(rescanIsDue());
  EXPECT_EQ(log.countStartingWith("start animation"), 0U) << "the show stands until the sheet is closed";
  EXPECT_EQ(log.countStartingWith("Scan directory"), 0U);
}

TEST_F(SheetFoldersTest, aDismissedDialogChangesNothing) {
  for (const long response : {0L, -1L, 2L}) choosesFolder("/srv/photos", response);
  EXPECT_EQ(view->mainDirectoryLocation(), pictureFolder.path());
  EXPECT_EQ(log.countStartingWith("User selected"), 0U);
  EXPECT_TRUE(chooserEnabled());
}

TEST_F(SheetFoldersTest, theSameFolderChangesNothing) {
  sheet.texts[num_images_] = "5";
  choosesFolder(pictureFolder.path());
  choosesFolder(pictureFolder.path() + "/");
  EXPECT_EQ(sheet.count(), "5");
  EXPECT_TRUE(chooserEnabled());
  EXPECT_EQ(log.countStartingWith("User selected"), 0U);
}

TEST_F(SheetFoldersTest, whatBeginsLikeTheTemporaryFolderBecomesIt) {
  for (const char* folder : {"/tmp/pictures", "/tmpfiles", "/tmp"}) {
    choosesFolder(folder);
    EXPECT_EQ(view->mainDirectoryLocation(), "/private/tmp") << folder;
    EXPECT_EQ(sheet.texts[directoryPathView_], "/private/tmp");
  }
  EXPECT_EQ(log.count("User selected directory: /private/tmp"), 3U);
  choosesFolder("/Tmp/x");
  EXPECT_EQ(view->mainDirectoryLocation(), "/Tmp/x") << "case counts";
  choosesFolder("/srv/tmp");
  EXPECT_EQ(view->mainDirectoryLocation(), "/srv/tmp");
}

TEST_F(SheetFoldersTest, theRootIsTooShortToBeginLikeIt) {
  choosesFolder("/");
  EXPECT_EQ(view->mainDirectoryLocation(), "/");
}

TEST_F(SheetFoldersTest, anAnswerWithoutAFolderChangesNothing) {
  choosesFolder("");
  choosesFolder("photos");
  EXPECT_EQ(view->mainDirectoryLocation(), pictureFolder.path());
}

TEST_F(SheetFoldersTest, namesAreMadePrintableInTheLogOnly) {
  choosesFolder("/srv/a\nb");
  EXPECT_TRUE(log.has("User selected directory: /srv/a\\x0Ab", LogLevel::Information));
  EXPECT_EQ(view->mainDirectoryLocation(), "/srv/a\nb");
}

TEST_F(SheetFoldersTest, anAnswerAfterTheViewHasGoneIsNoAnswer) {
  actions().selectDirectory();
  view.reset();
  chooser.answer({1, "/srv/photos"});
  EXPECT_EQ(log.countStartingWith("User selected"), 0U);
}

TEST_F(SheetFoldersTest, withoutADialogNothingIsChosen) {
  folderChooser = nullptr;
  start();
  actions().selectDirectory();
  EXPECT_EQ(view->mainDirectoryLocation(), pictureFolder.path());
}

// --- A dropped folder ---

TEST_F(SheetFoldersTest, aDroppedFolderIsScannedAtOnce) {
  TemporaryFolder other;
  other.write("a.jpg", "x");
  const std::string folder = other.path();
  view->setMainDirectoryLocation("/nowhere");
  drop("/srv/none");
  EXPECT_TRUE(log.has("User selected directory: /srv/none", LogLevel::Information));
  EXPECT_TRUE(log.has("Scan directory /srv/none  (id = " + identity() + ")", LogLevel::Information));
  EXPECT_EQ(sheet.begins, 0);
  runScan();
  EXPECT_TRUE(chooserEnabled());
  EXPECT_TRUE(sheet.enabled(applyView_));
}

TEST_F(SheetFoldersTest, aDroppedFileMeansItsFolder) {
  TemporaryFolder other;
  const std::string file = other.write("a.jpg", "x");
  view->setMainDirectoryLocation("/nowhere");
  view->preferencesSheet()->fileDropped(file);
  loop.runPending();
  EXPECT_TRUE(log.has("User selected directory: " + picturesFolderFor(other.path()), LogLevel::Information));
  runScan();
  view->setMainDirectoryLocation("/nowhere");
  view->preferencesSheet()->fileDropped(other.path());
  loop.runPending();
  EXPECT_EQ(view->mainDirectoryLocation(), picturesFolderFor(other.path()));
  runScan();
}

TEST_F(SheetFoldersTest, aDroppedFileThatIsNotThereChangesNothing) {
  view->preferencesSheet()->fileDropped("/srv/none/a.jpg");
  loop.runPending();
  EXPECT_TRUE(log.has("What was dropped is not there: /srv/none/a.jpg", LogLevel::Error));
  EXPECT_EQ(view->mainDirectoryLocation(), pictureFolder.path());
}

TEST_F(SheetFoldersTest, withTheSheetOpenADroppedFolderWaitsForIt) {
  view->preferencesSheet()->beginSheet({});
  drop("/srv/photos");
  EXPECT_EQ(sheet.begins, 2) << "it comes to the front";
  EXPECT_TRUE(rescanIsDue());
  EXPECT_FALSE(view->queryIsInProgress());
  EXPECT_EQ(sheet.texts[directoryPathView_], "/srv/photos");
}

TEST_F(SheetFoldersTest, theSameFolderDroppedChangesNothing) {
  drop(pictureFolder.path());
  drop("");
  drop("relative");
  EXPECT_FALSE(view->queryIsInProgress());
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(SheetFoldersTest, aFolderIsNotTakenWhileAScanRuns) {
  drop("/srv/none");
  drop("/srv/late");
  EXPECT_TRUE(log.has("A scan is running; the folder is not taken: /srv/late", LogLevel::Information));
  EXPECT_EQ(view->mainDirectoryLocation(), "/srv/none");
  runScan();
}

TEST_F(SheetFoldersTest, theTemporaryFolderIsTheSameWhenDropped) {
  drop("/tmp/pictures");
  EXPECT_EQ(view->mainDirectoryLocation(), "/private/tmp");
  runScan();
}

// --- The questions ---

TEST(FolderQuestionsTest, homeWinsOverTheStartFolder) {
  EXPECT_EQ(folderQuestion("/srv/photos", false, "/home/me").startFolder, "/home/me");
  EXPECT_EQ(folderQuestion("/srv/photos", true, "/home/me").startFolder, "/home/me");
  EXPECT_EQ(folderQuestion("/srv/photos", false, "").startFolder, "/srv/photos");
  EXPECT_EQ(folderQuestion(std::nullopt, false, "").startFolder, "");
}

TEST(FolderQuestionsTest, anAliasIsAskedAboutByItsLastName) {
  const FolderQuestion question = folderQuestion("/srv/my photos", true, "/home/me");
  EXPECT_EQ(question.message,
            "The scan encountered an alias pointing to folder \"my photos\"\n"
            "Click Include if you want Lumivane to include this folder");
  EXPECT_EQ(question.confirmLabel, "Include");
  const auto named = [](const char* folder) {
    const std::string message = folderQuestion(folder, true, "").message;
    return message.substr(0, message.find('\n'));
  };
  EXPECT_EQ(named("/"), "The scan encountered an alias pointing to folder \"/\"");
  EXPECT_EQ(named("/a/b/"), "The scan encountered an alias pointing to folder \"b\"");
}

TEST(FolderQuestionsTest, withoutADialogTheAnswerIsNo) {
  FolderAnswer said{1, "/x"};
  askUserToOpenDirectory(nullptr, {}, [&](const FolderAnswer& answer) { said = answer; });
  EXPECT_NE(said.response, 1);
}

// What a walk hears of an answer.
struct AliasQuestionsTest : testing::Test {
  FakeFolderChooser chooser;
  PermissionAnswer heard;
  PermissionAnswer answered(const FolderAnswer& answer) {
    aliasQuestions(&chooser, "/home/me")("/srv/x",
                                         [this](PermissionAnswer reply) { heard = std::move(reply); });
    chooser.answer(answer);
    return heard;
  }
};

TEST_F(AliasQuestionsTest, theFolderThatWasPickedIsTheOneThatCounts) {
  const PermissionAnswer answer = answered({1, "/srv/other"});
  EXPECT_EQ(answer.response, 1);
  EXPECT_EQ(answer.folder, "/srv/other");
  EXPECT_EQ(chooser.asked[0].confirmLabel, "Include");
}

TEST_F(AliasQuestionsTest, aDenialKeepsItsNumber) {
  EXPECT_EQ(answered({0, "/srv/x"}).response, 0);
  EXPECT_EQ(answered({-1, ""}).response, -1);
}

TEST_F(AliasQuestionsTest, aConfirmationWithoutAFolderIsADenial) {
  EXPECT_EQ(answered({1, ""}).response, 0);
  EXPECT_EQ(answered({1, "x"}).response, 0);
}

}  // namespace
}  // namespace lumivane

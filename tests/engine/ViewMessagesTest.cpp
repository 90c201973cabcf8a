#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

struct ViewMessagesTest : ViewTest {
  ViewMessagesTest() { listPictures(3); }
};

TEST_F(ViewMessagesTest, showsTwoLines) {
  start();
  view->displayMessage("one", "two");
  EXPECT_EQ(view->shownText(), "one\ntwo");
  EXPECT_FALSE(view->firstLineIsError());
}

TEST_F(ViewMessagesTest, anAbsentFirstLineIsABlank) {
  start();
  view->displayMessage(std::nullopt, "");
  EXPECT_EQ(view->firstLine(), " ");
  EXPECT_FALSE(view->secondLine());
}

TEST_F(ViewMessagesTest, theTextLayerFollowsTheText) {
  start();
  const int before = text.renders;
  view->displayMessage("hello", std::nullopt);
  EXPECT_EQ(text.renders, before + 1);
  const LayerProperties& p = view->textLayer().properties();
  EXPECT_NEAR(p.bounds.size.width, 5 * 10 + 0.3 * 20, 1e-9);
  EXPECT_NEAR(p.bounds.size.height, 24 + 0.2 * 20, 1e-9);
  EXPECT_EQ(p.shadow.path, p.bounds);
  EXPECT_TRUE(p.contents);
}

TEST_F(ViewMessagesTest, whatStandsThereAlreadyIsNotDrawnAnew) {
  start();
  view->displayMessage("hello", std::nullopt);
  const int renders = text.renders;
  const std::uint64_t revision = view->mainLayer().treeRevision();
  view->displayMessage("hello", "");
  view->refreshTextLayer();
  EXPECT_EQ(text.renders, renders);
  EXPECT_EQ(view->mainLayer().treeRevision(), revision);
  view->setContentsScale(2);
  EXPECT_EQ(text.renders, renders + 2) << "the line and the help";
  view->setContentsScale(2);
  EXPECT_EQ(text.renders, renders + 2);
}

TEST_F(ViewMessagesTest, logsAndShows) {
  start();
  view->logAndDisplayMessage("Image gone: ", "a.jpg", true);
  EXPECT_EQ(view->firstLine(), "Image gone: a.jpg");
  EXPECT_TRUE(view->firstLineIsError());
  EXPECT_TRUE(log.has("Image gone: a.jpg", LogLevel::Error));
}

TEST_F(ViewMessagesTest, anEmptyMessageEmptiesTheLineAndLogsNothing) {
  start();
  const std::size_t before = log.entries().size();
  view->logAndDisplayMessage("", false);
  EXPECT_EQ(view->firstLine(), "");
  EXPECT_EQ(log.entries().size(), before);
}

TEST_F(ViewMessagesTest, anErrorMakesTheNextPictureComeSooner) {
  start();
  beat();
  const std::string first = view->filename();
  view->displayErrorMessage("trouble", "");
  run(Seconds{2.98});
  EXPECT_EQ(view->filename(), first);
  run(Seconds{0.04});
  EXPECT_NE(view->filename(), first);
}

TEST_F(ViewMessagesTest, probesAFileThatCannotBeOpened) {
  files.content["/there"] = "x";  // and no picture
  storeList({"/there", "/nowhere"});
  start();
  run(Seconds{30});
  EXPECT_TRUE(log.has("Error: /nowhere: No such file or directory", LogLevel::Error));
  EXPECT_TRUE(log.has("  No error found!", LogLevel::Error));
}

TEST_F(ViewMessagesTest, writesAboutAPicture) {
  configure([](DisplaySettings& s) { s.showImagePath_ = false; });
  start();
  ImageInfo info;
  info.latitude = 48.137;
  info.longitude = 11.576;
  info.caption = "At the river";
  info.keywords = "water, summer";
  info.date = " 2024:05:06 07:08:09 ";
  view->displayFilename("/p/a:b.jpg", info);
  EXPECT_EQ(view->firstLine(), "a\\/b.jpg");
  EXPECT_EQ(view->secondLine(), "At the river. water, summer. GPS: +11.58 +48.14. 2024:05:06 07:08:09");
  EXPECT_TRUE(log.has("/p/a\\/b.jpg", LogLevel::Information));
}

TEST_F(ViewMessagesTest, aPictureWithoutDetailsHasOneLine) {
  start();
  view->displayFilename("/p/a.jpg", {});
  EXPECT_FALSE(view->secondLine());
}

TEST_F(ViewMessagesTest, saysThatItIsPausedBlankOrMuted) {
  start();
  beat();
  const std::string name = view->filename();
  press(U' ');
  EXPECT_EQ(view->shownText(), name + " (slideshow paused)");
  press(U' ');
  press(U'b');
  EXPECT_EQ(view->shownText(), "(blanked)");
  press(U'b');
  press(U'i');
  EXPECT_EQ(view->shownText(), " ");
}

}  // namespace
}  // namespace lumivane

#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

using ViewSetupTest = ViewTest;

TEST_F(ViewSetupTest, logsItsBanner) {
  makeView();
  char identity[32];
  std::snprintf(identity, sizeof identity, "%p", static_cast<void*>(view.get()));
  const auto entries = log.entries();
  ASSERT_GE(entries.size(), 5U);
  EXPECT_EQ(entries[0].text, std::string("LumivaneApp started (version: 1.0 (#42)) (id = ") + identity + ")");
  EXPECT_EQ(entries[1].text, "\n");
  EXPECT_EQ(entries[2].text, "macOS version: 12.0.0");
  EXPECT_EQ(entries[3].text, "\n");
  EXPECT_EQ(entries[4].text,
            "initWithFrame: origin = 0.000000 , 0.000000 ;  size = 1920.000000 , 1080.000000");
  EXPECT_TRUE(
      log.has("Photos authorization status: The user has explicitly granted us access to the photo library",
              LogLevel::Information));
}

TEST_F(ViewSetupTest, saysWhenItsVersionIsUnknown) {
  settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
  Host bare = host();
  bare.programVersion = {};
  view = LumivaneView::initWithFrame({}, false, bare);
  EXPECT_TRUE(log.has("CFBundleShortVersionString not found!", LogLevel::Error));
  EXPECT_EQ(log.countStartingWith("LumivaneApp started (version: ? (#\?\?))"), 1U);
}

TEST_F(ViewSetupTest, makesTheLayers) {
  makeView();
  const LayerProperties& text_ = view->textLayer().properties();
  EXPECT_EQ(text_.zPosition, 0);
  EXPECT_EQ(text_.anchorPoint, (PointPt{0, 0}));
  EXPECT_EQ(text_.position, (PointPt{14, 14}));
  EXPECT_EQ(text_.shadow.opacity, 0.5);
  EXPECT_EQ(text_.shadow.radius, 7);
  const LayerProperties& help = view->helpLayer().properties();
  EXPECT_TRUE(help.hidden);
  EXPECT_EQ(help.zPosition, 1);
  EXPECT_EQ(help.shadow.radius, 4);
  EXPECT_EQ(help.backgroundColor, (Color{0.5F, 0.5F, 0.5F, 0.3F}));
  EXPECT_EQ(help.position, (PointPt{960, 540}));
}

TEST_F(ViewSetupTest, namesItsQueue) {
  makeView();
  EXPECT_EQ(queues.names, std::vector<std::string>{"LumivanePrefetchQueue"});
}

TEST_F(ViewSetupTest, goesOnWithoutASupportFolder) {
  folders.data.clear();
  listPictures(2);
  start();
  EXPECT_TRUE(log.has("could not get application support directory!", LogLevel::Error));
  EXPECT_TRUE(queues.names.empty());
  run(Seconds{30});
}

TEST_F(ViewSetupTest, withOneDisplayNothingIsRenamed) {
  start();
  EXPECT_EQ(view->displayName(), "Color LCD");
  EXPECT_EQ(view->timeOffset(), 0);
  EXPECT_FALSE(view->zoomIn());
  EXPECT_TRUE(log.has("display: Color LCD , id: 1", LogLevel::Information));
  EXPECT_TRUE(log.has("1 displays attached", LogLevel::Information));
  EXPECT_TRUE(log.has("our display = Color LCD (1)", LogLevel::Information));
}

TEST_F(ViewSetupTest, displaysOfOneNameGetTheirNumbers) {
  displays.all = {{1, "Color LCD", {}, 1}, {2, "Color LCD", {}, 1}};
  window.display = 2;
  start();
  EXPECT_EQ(view->allScreenNames(), (std::vector<std::string>{"Color LCD_1", "Color LCD_2"}));
  EXPECT_EQ(view->displayName(), "Color LCD_2");
}

TEST_F(ViewSetupTest, neighbouringDisplaysAreStaggeredAndMoveInOppositeSenses) {
  displays.all = {{5, "A", {}, 1}, {6, "B", {}, 1}, {7, "A", {}, 1}};
  window.display = 7;
  start();
  EXPECT_EQ(view->allScreenNames(), (std::vector<std::string>{"A_5", "B", "A_7"}));
  EXPECT_FLOAT_EQ(view->timeOffset(), 2.2F);
  EXPECT_FALSE(view->zoomIn());
  window.display = 6;
  start();
  EXPECT_FLOAT_EQ(view->timeOffset(), 1.1F);
  EXPECT_TRUE(view->zoomIn());
}

TEST_F(ViewSetupTest, aStaggeredDisplayShowsItsFirstPictureLater) {
  displays.all = {{1, "A", {}, 1}, {2, "Color LCD", {}, 1}};
  window.display = 2;
  listPictures(3);
  makeView();
  view->viewWillMoveToWindow(&window);
  run(Seconds{1.08});
  EXPECT_TRUE(view->filename().empty());
  run(Seconds{0.04});
  EXPECT_FALSE(view->filename().empty());
}

TEST_F(ViewSetupTest, survivesAMissingWindow) {
  makeView();
  view->viewWillMoveToWindow(nullptr);
  EXPECT_TRUE(log.has("viewWillMoveToWindow was called with NULL window.", LogLevel::Information));
}

TEST_F(ViewSetupTest, theTextStandsFurtherInOnTallScreens) {
  start();
  view->adjustLayersToNewSize({{0, 0}, {1600, 901}});
  EXPECT_EQ(view->textLayer().properties().position, (PointPt{14, 14}));
  EXPECT_EQ(view->textLayer().properties().shadow.radius, 7);
  view->adjustLayersToNewSize({{0, 0}, {1600, 900}});
  EXPECT_EQ(view->textLayer().properties().position, (PointPt{7, 7}));
  EXPECT_EQ(view->textLayer().properties().shadow.radius, 3.5);
}

TEST_F(ViewSetupTest, theHelpFitsSmallScreens) {
  start();
  view->adjustLayersToNewSize({{0, 0}, {1024, 380}});
  EXPECT_DOUBLE_EQ(view->helpFontSize(), 12);
  view->adjustLayersToNewSize({{0, 0}, {1024, 768}});
  EXPECT_DOUBLE_EQ(view->helpFontSize(), 20);
}

TEST_F(ViewSetupTest, theHelpKeepsToItsFontSizes) {
  configure([](DisplaySettings& s) { s.fontSize_ = 5; });
  start();
  view->adjustLayersToNewSize({{0, 0}, {1024, 768}});
  EXPECT_DOUBLE_EQ(view->helpFontSize(), 10);
}

TEST_F(ViewSetupTest, aNewWindowRepeatsTheStart) {
  listPictures(3);
  start();
  runUntilChange();
  listPictures(5);
  view->viewWillMoveToWindow(&window);
  EXPECT_EQ(view->imageFiles().size(), 5U);
  EXPECT_EQ(view->formerLayer(), nullptr);
  EXPECT_EQ(view->prefetchLayer(), nullptr);
}

}  // namespace
}  // namespace lumivane

#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

double opacityTo(const Layer& layer, const char* key) {
  const BasicAnimation* animation = layer.animation(key);
  return animation == nullptr ? -1 : std::get<double>(animation->to);
}

using ViewPictureChangeTest = ViewTest;

TEST_F(ViewPictureChangeTest, aCutLeavesNoFormerLayerAndNoFade) {
  listPictures(3);
  start();
  beat();
  runUntilChange();
  EXPECT_EQ(view->formerLayer(), nullptr);
  EXPECT_EQ(view->currentLayer()->animation(kFadeInAnimKey), nullptr);
  EXPECT_EQ(view->actualFadingDuration(), Seconds{0});
}

struct ViewDissolveTest : ViewTest {
  ViewDissolveTest() {
    configure([](DisplaySettings& s) { s.crossDissolve_ = true; });
    listPictures(5);
  }
};

TEST_F(ViewDissolveTest, fadesTheNewPictureInAndTheOldOneOut) {
  start();
  beat();
  run(Seconds{5});
  const Layer* old = view->currentLayer();
  runUntilChange();
  const double fade = 0.5 + 9.5 * (4.5 / 9.5) * (4.5 / 9.5);
  EXPECT_NEAR(view->actualFadingDuration().count(), fade, 1e-9);
  EXPECT_EQ(view->formerLayer(), old);
  EXPECT_EQ(opacityTo(*view->currentLayer(), kFadeInAnimKey), 1);
  EXPECT_EQ(opacityTo(*view->formerLayer(), kFadeOutAnimKey), 0);
  EXPECT_NEAR(view->formerLayer()->animation(kFadeOutAnimKey)->duration.count(), fade - 0.05, 1e-9);
}

TEST_F(ViewDissolveTest, theOldPictureIsGoneWhenItHasFaded) {
  start();
  beat();
  run(Seconds{5});
  runUntilChange();
  run(view->actualFadingDuration() - Seconds{0.1});
  EXPECT_NE(view->formerLayer(), nullptr);
  run(Seconds{0.1});
  EXPECT_EQ(view->formerLayer(), nullptr);
}

TEST_F(ViewDissolveTest, aFormerLayerGoesEarlyWhenTheNextChangeComes) {
  start();
  beat();
  run(Seconds{9});
  runUntilChange();
  press(kRightArrowCharacter);
  run(Seconds{0.1});
  const std::size_t layersOfPictures = view->mainLayer().sublayers().size();
  EXPECT_LE(layersOfPictures, 5U) << "current, former, prefetched, text, help";
}

TEST_F(ViewDissolveTest, theTextStaysInFrontOfEveryPicture) {
  configure([](DisplaySettings& s) { s.kenBurnsIsOn_ = true; });
  start();
  beat();
  run(Seconds{9});
  runUntilChange();
  const auto& layers = view->mainLayer().sublayers();
  const auto place = [&](const Layer* layer) {
    return std::find_if(layers.begin(), layers.end(), [&](const auto& l) { return l.get() == layer; }) -
           layers.begin();
  };
  EXPECT_EQ(view->currentLayer()->properties().zPosition, view->textLayer().properties().zPosition);
  EXPECT_GT(place(&view->textLayer()), place(view->currentLayer()));
  EXPECT_GT(place(view->currentLayer()), place(view->formerLayer()));
}

TEST_F(ViewDissolveTest, historyStepsFadeQuickly) {
  start();
  beat();
  runUntilChange();
  runUntilChange();
  press(kLeftArrowCharacter);
  beat();
  EXPECT_NEAR(view->actualFadingDuration().count(), 0.15, 1e-12);
  EXPECT_NEAR(view->formerLayer()->animation(kFadeOutAnimKey)->duration.count(), 0.1, 1e-12);
}

TEST_F(ViewDissolveTest, aResizeRebuildsThePictureQuickly) {
  start();
  beat();
  run(Seconds{3});
  const std::string name = view->filename();
  const std::size_t queued = decoder.decodes.size();
  window.rectangle = {{0, 0}, {800, 600}};
  view->viewDidEndLiveResize();
  beat();
  EXPECT_EQ(view->filename(), name);
  EXPECT_EQ(view->currentLayer()->properties().bounds.size, (SizePt{800, 600}));
  EXPECT_NEAR(view->actualFadingDuration().count(), 0.15, 1e-12);
  EXPECT_EQ(decoder.decodes.size(), queued);
}

// The window manager may still be sizing the window when the first key is pressed.
TEST_F(ViewDissolveTest, aStepIsNotLostInAResize) {
  start();
  beat();
  runUntilChange();
  const std::string newest = view->filename();
  press(kLeftArrowCharacter);
  view->viewDidEndLiveResize();
  run(Seconds{0.1});
  EXPECT_NE(view->filename(), newest);
  press(kRightArrowCharacter);
  view->viewDidEndLiveResize();
  run(Seconds{0.1});
  EXPECT_EQ(view->filename(), newest);
}

TEST_F(ViewDissolveTest, aPictureThatIsLoadedForAStepIsNotHeldUpByAResize) {
  start();
  beat();
  const std::string first = view->filename();
  press(kRightArrowCharacter);
  view->animateOneFrame();
  loop.runPending();
  ASSERT_TRUE(view->prefetchSlot().full());
  view->viewDidEndLiveResize();
  run(Seconds{0.1});
  EXPECT_NE(view->filename(), first);
}

TEST_F(ViewDissolveTest, aResizeShowsNoOtherPictureOnceTheStepIsMade) {
  start();
  beat();
  runUntilChange();
  press(kLeftArrowCharacter);
  run(Seconds{0.1});
  const std::string shown = view->filename();
  view->viewDidEndLiveResize();
  run(Seconds{2});
  EXPECT_EQ(view->filename(), shown);
}

TEST_F(ViewDissolveTest, aResizeBeforeTheFirstPictureWaitsForIt) {
  start();
  view->viewDidEndLiveResize();
  beat();
  EXPECT_TRUE(view->filename().empty());
  run(Seconds{10.1});
  EXPECT_FALSE(view->filename().empty());
}

TEST_F(ViewDissolveTest, theInformationLineFollowsLater) {
  configure([](DisplaySettings& s) { s.displayFilename_ = true; });
  start();
  beat();
  const double wait = 0.4 * view->actualFadingDuration().count();
  EXPECT_EQ(log.count(view->filename()), 0U);
  run(Seconds{wait - 0.02});
  EXPECT_EQ(log.count(view->filename()), 0U);
  run(Seconds{0.04});
  EXPECT_EQ(log.count(view->filename()), 1U);
  EXPECT_EQ(view->firstLine(), view->filename());
}

TEST_F(ViewDissolveTest, aDelayBlanksTheLineAndAddsUp) {
  configure([](DisplaySettings& s) { s.infoDelay_ = 3; });
  start();
  view->displayMessage("old", std::nullopt);
  beat();
  EXPECT_EQ(view->firstLine(), " ");
  run(Seconds{0.4 * view->actualFadingDuration().count() + 2.96});
  EXPECT_EQ(view->firstLine(), " ");
  run(Seconds{0.08});
  EXPECT_EQ(view->firstLine(), view->filename());
}

TEST_F(ViewDissolveTest, theDelayedLineTakesTheNameOfThenAndTheDetailsOfNow) {
  for (auto& [path, picture] : decoder.pictures) {
    picture.properties.iptc.emplace();
    picture.properties.iptc->captionAbstract = "about " + path;
  }
  start();
  beat();
  const std::string first = view->filename();
  press(kRightArrowCharacter);  // before the first line has come up
  beat();
  ASSERT_NE(view->filename(), first);
  run(Seconds{4});
  EXPECT_EQ(view->firstLine(), view->filename());
  EXPECT_EQ(log.count(view->filename()), 2U) << "both lines name the picture that stands when they come";
}

// --- The layer of a picture ---

using ViewPictureLayerTest = ViewTest;

TEST_F(ViewPictureLayerTest, aTurnedPictureIsMeasuredTurned) {
  configure([](DisplaySettings& s) {
    s.allowBlackBorders_ = false;
    s.blackBorderAvoidance_ = 0.1F;
  });
  listPictures(1);
  decoder.pictures[path(0)].properties.orientation = 6;
  start();
  beat();
  EXPECT_EQ(view->currentLayer()->properties().contentsGravity, ContentsGravity::ResizeAspect)
      << "3000 x 4000 is much narrower than the screen";
}

TEST_F(ViewPictureLayerTest, aWidePictureIsCroppedWithoutBlackBorders) {
  configure([](DisplaySettings& s) { s.allowBlackBorders_ = false; });
  listPictures(1, 9000, 2000);
  start();
  beat();
  EXPECT_EQ(view->currentLayer()->properties().contentsGravity, ContentsGravity::ResizeAspectFill);
}

TEST_F(ViewPictureLayerTest, theFillModeIsKeptForTheZoomToo) {
  configure([](DisplaySettings& s) {
    s.allowBlackBorders_ = false;
    s.zoomIsOn_ = true;
  });
  listPictures(1, 9000, 2000);
  start();
  beat();
  EXPECT_EQ(view->currentLayer()->properties().contentsGravity, ContentsGravity::ResizeAspectFill);
  const BasicAnimation* zoom = view->currentLayer()->animation(kBoundsAnimKey);
  ASSERT_NE(zoom, nullptr);
  EXPECT_EQ(std::get<SizePt>(zoom->from), (SizePt{1920, 1080}));
}

TEST_F(ViewPictureLayerTest, smallPicturesAlwaysZoomIn) {
  configure([](DisplaySettings& s) { s.zoomIsOn_ = true; });
  listPictures(1, 800, 400);
  start();
  beat();
  EXPECT_TRUE(view->zoomIn());
  const BasicAnimation* zoom = view->currentLayer()->animation(kBoundsAnimKey);
  ASSERT_NE(zoom, nullptr);
  EXPECT_NEAR(std::get<SizePt>(zoom->from).width, 825.6, 1e-4);
  EXPECT_NEAR(std::get<SizePt>(zoom->from).height, 464.4, 1e-4);
  EXPECT_NEAR(std::get<SizePt>(zoom->to).width, 1238.4, 1e-4);
  EXPECT_NEAR(std::get<SizePt>(zoom->to).height, 696.6, 1e-4);
}

TEST_F(ViewPictureLayerTest, plainZoomsAlternate) {
  configure([](DisplaySettings& s) {
    s.zoomIsOn_ = true;
    s.initZoomInFactor_ = 1.2F;
  });
  listPictures(4, 826, 400);
  start();
  beat();
  const bool first = view->zoomIn();
  runUntilChange();
  EXPECT_NE(view->zoomIn(), first);
  const auto from = std::get<SizePt>(view->currentLayer()->animation(kBoundsAnimKey)->from);
  const auto to = std::get<SizePt>(view->currentLayer()->animation(kBoundsAnimKey)->to);
  EXPECT_NEAR(from.width, 1920 * 1.2, 1e-3);
  EXPECT_NEAR(to.width, 1920 / 1.2, 1e-3);
}

// --- Trouble ---

using ViewTroubleTest = ViewTest;

TEST_F(ViewTroubleTest, aMissingPictureIsNamedAndGonePast) {
  configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
  listPictures(3);
  decoder.pictures.erase(path(1));
  start();
  beat();
  EXPECT_EQ(view->firstLine(), "Image gone: " + path(1));
  EXPECT_TRUE(log.has("Loading image in main thread: " + path(1), LogLevel::Information));
  EXPECT_TRUE(log.has("Image gone: " + path(1) + "!", LogLevel::Error));
  EXPECT_FALSE(tables.shownFileByDisplay.contains(1));
  run(Seconds{3.02});
  EXPECT_EQ(view->filename(), path(2)) << "three seconds later the next one is there";
  EXPECT_EQ(tables.shownFileByDisplay[1], path(2));
}

TEST_F(ViewTroubleTest, aShortPeriodIsNotShortenedFurther) {
  configure([](DisplaySettings& s) {
    s.dontRandomize_ = true;
    s.durationPerImage_ = 3;
  });
  listPictures(3);
  decoder.pictures.erase(path(1));
  start();
  beat();
  run(Seconds{2.98});
  EXPECT_TRUE(view->filename().empty());
  run(Seconds{0.04});
  EXPECT_EQ(view->filename(), path(2));
}

TEST_F(ViewTroubleTest, aShownErrorStandsOnBlack) {
  configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
  listPictures(3);
  start();
  beat();
  ASSERT_TRUE(view->currentLayer()->properties().contents);
  view->displayErrorMessage("Image gone: ", "x");
  EXPECT_FALSE(view->currentLayer()->properties().contents);
  EXPECT_EQ(view->firstLine(), "Image gone: x");
  EXPECT_TRUE(view->firstLineIsError());
  EXPECT_TRUE(log.has("Image gone: x", LogLevel::Error));
}

}  // namespace
}  // namespace lumivane

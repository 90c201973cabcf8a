#include "app/MasterViewController.h"

#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

struct MasterViewControllerTest : ViewTest {
  std::unique_ptr<MasterViewController> controller;

  void load() {
    listPictures(5);
    settingsStore = std::make_unique<SettingsStore>(files, log, folders.config);
    controller = std::make_unique<MasterViewController>(host());
    controller->viewDidLoad({{0, 0}, {800, 600}});
    controller->viewWillMoveToWindow(&window);
    loop.turnEnded = [this] { controller->turnEnded(); };
    controller->turnEnded();
  }
};

TEST_F(MasterViewControllerTest, drivesTheViewFiftyTimesASecond) {
  load();
  loop.runFor(std::chrono::milliseconds(19));
  EXPECT_EQ(log.countStartingWith("Loading image in main thread: "), 0U);
  loop.runFor(std::chrono::milliseconds(1));
  EXPECT_EQ(log.countStartingWith("Loading image in main thread: "), 1U) << "asked for by the first frame";
  EXPECT_TRUE(controller->saver().filename().empty());
  loop.runFor(std::chrono::milliseconds(20));
  const std::string first = controller->saver().filename();
  EXPECT_FALSE(first.empty());
  loop.runFor(std::chrono::seconds(10));
  EXPECT_NE(controller->saver().filename(), first);
}

TEST_F(MasterViewControllerTest, requestsNoFramesOnceItsViewDisappears) {
  load();
  controller->viewWillDisappear();
  loop.runFor(std::chrono::minutes(5));
  EXPECT_TRUE(controller->saver().filename().empty());
}

TEST_F(MasterViewControllerTest, aShowThatStandsStillWakesTheMachineOnlyForTheNextPicture) {
  load();
  loop.runFor(std::chrono::seconds(5));
  ASSERT_FALSE(controller->saver().filename().empty());
  int turns = 0;
  loop.turnEnded = [&] {
    ++turns;
    controller->turnEnded();
  };
  loop.runFor(std::chrono::milliseconds(4900));
  EXPECT_EQ(turns, 0);
  loop.runFor(std::chrono::milliseconds(200));
  EXPECT_GT(turns, 0);
}

TEST_F(MasterViewControllerTest, aKeyThatAsksForAnotherPictureIsFollowedWithinAFrame) {
  load();
  loop.runFor(std::chrono::seconds(15));
  const std::string second = controller->saver().filename();
  controller->keyDown({kLeftArrowCharacter, kNoModifiers, false});
  controller->turnEnded();
  loop.runFor(std::chrono::milliseconds(20));
  EXPECT_NE(controller->saver().filename(), second);
}

TEST_F(MasterViewControllerTest, handsKeysToTheView) {
  load();
  loop.runFor(std::chrono::milliseconds(20));
  controller->keyDown({U'b', kNoModifiers, false});
  EXPECT_TRUE(controller->saver().currentLayer()->properties().hidden);
}

}  // namespace
}  // namespace lumivane

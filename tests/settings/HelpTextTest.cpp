#include "settings/HelpText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/SettingsTable.h"

namespace lumivane {
namespace {

using testing::ElementsAre;

TEST(HelpText, ListsEveryKey) {
  EXPECT_THAT(linesOf(helpText(true)),
              ElementsAre("Help", "", "space          Pause advancing of images",
                          "arrow left     Show previous image again (cursor up works, too)",
                          "arrow right    Show next image (cursor down works, too)",
                          "return         Reveal current picture in Finder",
                          "delete         Move currently displayed image to Trash",
                          "Z              Pause zooming/panning",
                          "I              Toggle display of information at bottom",
                          "B              Blank / unblank the screen", "F              Toggle full screen"));
}

TEST(HelpText, LeavesTheDeleteKeyOutWhenItDoesNothing) {
  std::vector<std::string> lines = linesOf(helpText(true));
  lines.erase(lines.begin() + 6);
  EXPECT_EQ(linesOf(helpText(false)), lines);
}

}  // namespace
}  // namespace lumivane

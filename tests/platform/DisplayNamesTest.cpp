#include "platform/linux/DisplayNames.h"

namespace lumivane {
namespace {

TEST(DisplayNameFrom, IsMakerAndModel) {
  EXPECT_EQ(displayNameFrom("EIZO", "EV2450", "DP-1"), "EIZO EV2450");
  EXPECT_EQ(displayNameFrom("Samsung Electric Company", "LF27T35", "HDMI-1"), "Samsung LF27T35");
  EXPECT_EQ(displayNameFrom("Acme Display Co., Ltd.", "X1", "DP-1"), "Acme Display X1");
}

TEST(DisplayNameFrom, NamesTheMakerOnce) {
  EXPECT_EQ(displayNameFrom("Dell Inc.", "DELL U2720Q", "DP-1"), "DELL U2720Q");
  EXPECT_EQ(displayNameFrom("DEL", "DELL U2720Q", "DP-1"), "DELL U2720Q");
  EXPECT_EQ(displayNameFrom("LG Electronics", "LG ULTRAFINE", "DP-1"), "LG ULTRAFINE");
}

TEST(DisplayNameFrom, DoesWithoutAMaker) {
  EXPECT_EQ(displayNameFrom("", "Color LCD", "eDP-1"), "Color LCD");
  EXPECT_EQ(displayNameFrom("Unknown", "Color LCD", "eDP-1"), "Color LCD");
}

TEST(DisplayNameFrom, FallsBackToTheConnector) {
  EXPECT_EQ(displayNameFrom("Dell Inc.", "", "DP-1"), "DP-1");
  EXPECT_EQ(displayNameFrom("weston-X11", "none", "screen0"), "screen0");
  EXPECT_EQ(displayNameFrom("", "", ""), "unknown");
  EXPECT_EQ(displayNameFrom("Dell Inc.", " \n ", "\t"), "unknown");
}

TEST(DisplayNameFrom, LeavesOutWhatCannotBeSeen) {
  EXPECT_EQ(displayNameFrom("EIZO", "EV2450\n      ", "DP-1"), "EIZO EV2450");
  EXPECT_EQ(displayNameFrom("A\x1B", "\x07  B   C", "DP-1"), "A B C");
}

}  // namespace
}  // namespace lumivane

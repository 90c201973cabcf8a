#include "settings/OutsideLinks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/FakeWorkspace.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct OutsideLinksTest : testing::Test {
  FakeWorkspace workspace;
  RecordingLog log;
};

TEST_F(OutsideLinksTest, leadToOurPagesAndOurMailbox) {
  openLink(kDonationLink, workspace, log);
  openLink(kFeedbackLink, workspace, log);
  openLink(kHomepageLink, workspace, log);
  EXPECT_THAT(workspace.opened, ElementsAre("https://lumivane.example/donate.html",
                                            "mailto:feedback@lumivane.example?subject=Lumivane%20Feedback",
                                            "https://lumivane.example/index.html"));
  EXPECT_THAT(log.entries(), IsEmpty());
}

TEST_F(OutsideLinksTest, eachSaysInItsOwnWordsThatItIsNoUrl) {
  for (const OutsideLink& link : {kDonationLink, kFeedbackLink, kHomepageLink})
    openLink({"not a url", link.failure}, workspace, log);
  using Entry = RecordingLog::Entry;
  EXPECT_THAT(log.entries(), ElementsAre(Entry{"Creating donorbox URL failed", LogLevel::Error},
                                         Entry{"creating mailto URL failed", LogLevel::Error},
                                         Entry{"Creating homepage URL failed", LogLevel::Error}));
  EXPECT_THAT(workspace.opened, ElementsAre("", "", "")) << "the desktop is asked all the same";
}

TEST_F(OutsideLinksTest, aDesktopThatOpensNothingIsNoFailureOfOurs) {
  workspace.canOpen = false;
  openLink(kHomepageLink, workspace, log);
  EXPECT_THAT(log.entries(), IsEmpty());
}

TEST(UrlOf, takesWhatMayStandInAUrl) {
  EXPECT_EQ(urlOf("https://lumivane.example/a%20b?c=d#e"), "https://lumivane.example/a%20b?c=d#e");
  EXPECT_EQ(urlOf("mailto:a@b"), "mailto:a@b");
  for (const char* none : {"", "index.html", "https:", ":a", "1a:b", "a b:c", "https://a b",
                           "https://a/\u00E9", "https://a\n", "https://a/\"b\""})
    EXPECT_FALSE(urlOf(none)) << none;
}

}  // namespace
}  // namespace lumivane

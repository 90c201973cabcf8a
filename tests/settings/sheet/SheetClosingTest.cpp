// The ways out of the sheet: all of them keep the settings, and none stands in the way of the program's end.
#include <QTimer>

#include "tests/settings/sheet/SheetTest.h"

namespace lumivane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum SheetControl;

class SheetClosingTest : public SheetTest {};

TEST_F(SheetClosingTest, EscapeIsTheCloseButton) {
  QTest::keyClick(&sheet_.dialog(), Qt::Key_Escape);
  EXPECT_THAT(told(), ElementsAre("closeSheet"));
  EXPECT_TRUE(sheet_.isShown()) << "whether it goes is not the sheet's to decide";
  typeOver(durationPerImageView_, "2");
  QTest::keyClick(&sheet_.widget(durationPerImageView_), Qt::Key_Escape);
  EXPECT_THAT(told(), ElementsAre("closeSheet"));
  EXPECT_EQ(sheet_.text(durationPerImageView_), "2") << "what was typed is there to be read";
}

TEST_F(SheetClosingTest, SoAreTheWindowManagersButtonAndTheKeyForClosing) {
  EXPECT_FALSE(sheet_.dialog().close());
  EXPECT_THAT(told(), ElementsAre("closeSheet"));
  EXPECT_TRUE(sheet_.isShown());
  QTest::keySequence(&sheet_.dialog(), QKeySequence::Close);
  EXPECT_THAT(told(), ElementsAre("closeSheet"));
}

TEST_F(SheetClosingTest, EndsWhileItIsBeingClosed) {
  actions_.whenCalled = [&] { sheet_.end(); };
  sheet_.dialog().close();
  EXPECT_THAT(told(), ElementsAre("closeSheet"));
  EXPECT_FALSE(sheet_.isShown());
  sheet_.begin();
  EXPECT_TRUE(sheet_.isShown());
}

TEST_F(SheetClosingTest, NothingClosesItWhileTheButtonIsDisabled) {
  sheet_.setEnabled(applyView_, false);
  QTest::keyClick(&sheet_.dialog(), Qt::Key_Escape);
  QTest::keySequence(&sheet_.dialog(), QKeySequence::Close);
  EXPECT_FALSE(sheet_.dialog().close());
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_TRUE(sheet_.isShown());
}

TEST_F(SheetClosingTest, TheProgramQuitsPastIt) {
  sheet_.setEnabled(applyView_, false);
  QTimer::singleShot(0, [] { QCoreApplication::quit(); });
  QTimer::singleShot(10'000, qApp, [] { QCoreApplication::exit(1); });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_FALSE(sheet_.isShown());
}

TEST_F(SheetClosingTest, ComesToTheFrontWhereItIsShownAlready) {
  sheet_.begin();
  EXPECT_TRUE(sheet_.isShown());
  EXPECT_EQ(QApplication::activeWindow(), &sheet_.dialog());
}

TEST_F(SheetClosingTest, OpensWithTheKeysOnThePages) {
  EXPECT_TRUE(pages().isAncestorOf(QApplication::focusWidget()))
      << "an arrow key must not choose another display by mistake";
}

}  // namespace
}  // namespace lumivane

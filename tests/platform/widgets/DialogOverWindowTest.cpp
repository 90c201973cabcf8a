#include "platform/widgets/DialogOverWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>
#include <memory>

#include "tests/support/QtWaiting.h"

namespace lumivane {
namespace {

class KeyCount final : public QObject {
 public:
  int pressed = 0;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::KeyPress) ++pressed;
    return false;
  }
};

class DialogOverWindowTest : public ::testing::Test {
 protected:
  DialogOverWindowTest() {
    show_->setGeometry(100, 50, 600, 500);
    show_->show();
    dialog_.setWindowModality(Qt::WindowModal);
  }

  std::unique_ptr<QWindow> show_ = std::make_unique<QWindow>();
  QDialog dialog_;
  DialogOverWindow over_{dialog_, [this] { return show_.get(); }};
};

TEST_F(DialogOverWindowTest, LiesInTheMiddleOfTheWindowAndBelongsToIt) {
  dialog_.resize(200, 100);
  over_.show();
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_EQ(dialog_.windowHandle()->transientParent(), show_.get());
  const QPoint away = dialog_.geometry().center() - show_->geometry().center();
  EXPECT_LE(away.manhattanLength(), 6) << "but for the frame";
  EXPECT_EQ(QGuiApplication::modalWindow(), dialog_.windowHandle());
}

// As they come where Qt was not told that the dialog lost them.
TEST_F(DialogOverWindowTest, KeysThatReachTheHiddenDialogAreTheWindows) {
  over_.show();
  KeyCount keys;
  show_->installEventFilter(&keys);
  QKeyEvent press(QEvent::KeyPress, Qt::Key_C, Qt::NoModifier, "c");
  QCoreApplication::sendEvent(dialog_.windowHandle(), &press);
  EXPECT_EQ(keys.pressed, 0) << "the dialog is open";
  dialog_.hide();
  QCoreApplication::sendEvent(dialog_.windowHandle(), &press);
  EXPECT_EQ(keys.pressed, 1);
  show_->hide();
  QCoreApplication::sendEvent(dialog_.windowHandle(), &press);
  EXPECT_EQ(keys.pressed, 1) << "nobody sees the window";
}

TEST_F(DialogOverWindowTest, StaysOnTheDisplay) {
  const QRect room = show_->screen()->availableGeometry();
  show_->setGeometry(room.right() - 50, room.bottom() - 50, 600, 500);
  dialog_.resize(5000, 5000);
  over_.show();
  EXPECT_TRUE(room.contains(dialog_.geometry().adjusted(4, 4, -4, -4))) << "but for the frame";
  EXPECT_LT(dialog_.width(), room.width());
}

TEST_F(DialogOverWindowTest, WithoutAWindowItStandsForItself) {
  QDialog alone;
  DialogOverWindow over(alone, [] { return nullptr; });
  over.show();
  EXPECT_TRUE(alone.isVisible());
  EXPECT_EQ(alone.windowHandle()->transientParent(), nullptr);
}

TEST_F(DialogOverWindowTest, LiesOverAModalDialogThatIsShown) {
  over_.show();
  QDialog second;
  second.setWindowModality(Qt::WindowModal);
  DialogOverWindow over(second, [this] { return show_.get(); });
  over.show();
  EXPECT_EQ(second.windowHandle()->transientParent(), dialog_.windowHandle());
}

TEST_F(DialogOverWindowTest, TellsThatTheWindowWasClosed) {
  int gone = 0;
  over_.whenWindowGoes([&] {
    ++gone;
    dialog_.hide();
  });
  over_.show();
  show_->hide();
  EXPECT_EQ(gone, 0) << "whoever closes the window is still at it";
  EXPECT_TRUE(waitUntil([&] { return gone > 0; }));
  runPendingEvents();
  EXPECT_EQ(gone, 1);
}

TEST_F(DialogOverWindowTest, TellsThatTheWindowIsGoneAltogether) {
  int gone = 0;
  over_.whenWindowGoes([&] {
    ++gone;
    dialog_.hide();
  });
  over_.show();
  show_.reset();
  EXPECT_TRUE(waitUntil([&] { return gone == 1; }));
}

TEST_F(DialogOverWindowTest, MovesOverToTheShowWhenTheDialogBelowIsClosed) {
  over_.show();
  QDialog second;
  DialogOverWindow over(second, [this] { return show_.get(); });
  over.show();
  ASSERT_EQ(second.windowHandle()->transientParent(), dialog_.windowHandle());
  dialog_.hide();
  EXPECT_TRUE(waitUntil([&] { return second.windowHandle()->transientParent() == show_.get(); }));
  EXPECT_TRUE(second.isVisible());
}

}  // namespace
}  // namespace lumivane

// Who gets the keys while a dialog is open over the window, and after it: on a real X server, with real clicks.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProcess>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <QWindow>

#include "platform/widgets/DialogOverWindow.h"
#include "tests/support/QtWaiting.h"

namespace lumivane {
namespace {

// Stands for the slideshow.
class KeyWindow final : public QWindow {
 public:
  QString typed;
  int clicks = 0;

 protected:
  void keyPressEvent(QKeyEvent* event) override { typed += event->text(); }
  void mousePressEvent(QMouseEvent* /*event*/) override { ++clicks; }
};

class DialogKeysTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (QGuiApplication::platformName() != "xcb") GTEST_SKIP() << "needs an X server";
    if (QStandardPaths::findExecutable("xdotool").isEmpty()) GTEST_SKIP() << "xdotool is not installed";
    (new QVBoxLayout(&dialog_))->addWidget(&field_);
    dialog_.setWindowModality(Qt::WindowModal);
    show_.setGeometry(50, 50, 800, 600);
    show_.show();
    ASSERT_TRUE(waitUntil([&] { return show_.isExposed(); }));
    show_.requestActivate();
    ASSERT_TRUE(waitUntil([&] { return QGuiApplication::focusWindow() == &show_; }));
  }

  void openDialog() {
    over_.show();
    ASSERT_TRUE(waitUntil([&] { return dialog_.windowHandle()->isExposed() && dialog_.isActiveWindow(); }));
  }
  // Runs xdotool to its end while the main loop turns.
  void user(const QStringList& arguments) {
    QProcess process;
    process.start("xdotool", arguments);
    ASSERT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }));
  }
  // On the window, beside the dialog.
  void clickOnTheWindow() {
    const QPoint place = show_.geometry().topLeft() + QPoint(20, 20);
    ASSERT_FALSE(dialog_.frameGeometry().contains(place));
    user({"mousemove", QString::number(place.x()), QString::number(place.y()), "click", "1"});
  }

  KeyWindow show_;
  QDialog dialog_;
  QLineEdit field_;
  DialogOverWindow over_{dialog_, [this] { return &show_; }};
};

TEST_F(DialogKeysTest, TheDialogGetsThem) {
  openDialog();
  user({"key", "a"});
  EXPECT_TRUE(waitUntil([&] { return field_.text() == "a"; }));
  EXPECT_EQ(show_.typed, "");
}

TEST_F(DialogKeysTest, AClickOnThePictureDoesNotMakeTheDialogDead) {
  openDialog();
  clickOnTheWindow();
  ASSERT_TRUE(waitUntil([&] { return dialog_.isActiveWindow(); }));
  // Keys that were dropped on the way are typed again, as a user would.
  EXPECT_TRUE(waitUntil([&] {
    user({"key", "b"});
    return field_.text().contains('b');
  }));
  EXPECT_EQ(show_.typed, "");
  EXPECT_EQ(show_.clicks, 0) << "a modal dialog blocks the window below";
}

TEST_F(DialogKeysTest, TheWindowHasThemBackAfterwards) {
  openDialog();
  dialog_.hide();
  // Keys that were dropped on the way are typed again, as a user would.
  EXPECT_TRUE(waitUntil([&] {
    user({"key", "c"});
    return show_.typed.contains('c');
  }));
  EXPECT_EQ(field_.text(), "");
}

TEST_F(DialogKeysTest, ASecondDialogGivesThemBackToTheFirst) {
  openDialog();
  QDialog second;
  second.setWindowModality(Qt::WindowModal);
  DialogOverWindow over(second, [this] { return &show_; });
  over.show();
  ASSERT_TRUE(waitUntil([&] { return second.isActiveWindow(); }));
  clickOnTheWindow();
  ASSERT_TRUE(waitUntil([&] { return second.isActiveWindow(); }));
  second.hide();
  EXPECT_TRUE(waitUntil([&] { return dialog_.isActiveWindow(); }));
  user({"key", "d"});
  EXPECT_TRUE(waitUntil([&] { return field_.text() == "d"; }));
}

TEST_F(DialogKeysTest, LiesInTheMiddleOfTheWindow) {
  openDialog();
  const auto away = [&] { return dialog_.frameGeometry().center() - show_.frameGeometry().center(); };
  // Opened again where the window manager was still putting the window somewhere.
  EXPECT_TRUE(waitUntil([&] {
    if (away().manhattanLength() < 60) return true;
    dialog_.hide();
    over_.show();
    return false;
  })) << "but for the frame; away by "
      << away().x() << ", " << away().y() << ", the window at " << show_.x() << ", " << show_.y();
}

}  // namespace
}  // namespace lumivane

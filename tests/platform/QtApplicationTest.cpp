#include "platform/linux/QtApplication.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QSurfaceFormat>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <memory>

#include "platform/linux/SlideshowWindow.h"

namespace lumivane {
namespace {

struct CloseListener final : WindowListener {
  void windowWillClose() override { ++closes; }
  int closes = 0;
};

// Does something else than to close when it is asked to.
class Unwilling final : public QWindow {
 public:
  explicit Unwilling(std::function<void()> onClose) : onClose_(std::move(onClose)) { setVisible(true); }

 protected:
  void closeEvent(QCloseEvent* event) override {
    onClose_();
    event->ignore();
  }

 private:
  const std::function<void()> onClose_;
};

// Runs the program until it ends; a failure ends it after a while with a number of its own.
int runProgram() {
  QTimer deadline;
  QObject::connect(&deadline, &QTimer::timeout, [] { QCoreApplication::exit(99); });
  deadline.start(20'000);
  return QCoreApplication::exec();
}

TEST(QtApplicationTest, TerminateClosesTheWindowsAndEndsTheProgram) {
  CloseListener one;
  CloseListener other;
  SlideshowWindow window(QSurfaceFormat(), one);
  SlideshowWindow otherWindow(QSurfaceFormat(), other);
  window.show();
  otherWindow.show();
  QtApplication application;
  QTimer::singleShot(0, [&] {
    application.terminate();
    EXPECT_EQ(one.closes, 0);  // not before the caller has come to its end
    EXPECT_TRUE(window.qtWindow().isVisible());
  });
  EXPECT_EQ(runProgram(), 0);
  EXPECT_EQ(one.closes, 1);
  EXPECT_EQ(other.closes, 1);
  EXPECT_FALSE(window.qtWindow().isVisible() || otherWindow.qtWindow().isVisible());
}

TEST(QtApplicationTest, TerminateEndsTheProgramWhateverItsWindowsWant) {
  int asked = 0;
  Unwilling window([&] { ++asked; });
  QtApplication application;
  application.terminate();
  EXPECT_EQ(runProgram(), 0);
  EXPECT_EQ(asked, 1);
}

TEST(QtApplicationTest, AWindowMayTakeOthersAlong) {
  std::unique_ptr<QWindow> first;
  std::unique_ptr<QWindow> last;
  Unwilling window([&] {
    first.reset();
    last.reset();
  });
  first = std::make_unique<QWindow>();
  last = std::make_unique<QWindow>();
  QtApplication application;
  application.terminate();
  EXPECT_EQ(runProgram(), 0);
}

TEST(QtApplicationTest, TerminateBeforeTheProgramRunsIsNotLost) {
  QtApplication application;
  application.terminate();
  EXPECT_EQ(runProgram(), 0);
}

TEST(QtApplicationTest, TerminateMayComeTwice) {
  CloseListener listener;
  SlideshowWindow window(QSurfaceFormat(), listener);
  window.show();
  QtApplication application;
  application.terminate();
  application.terminate();
  EXPECT_EQ(runProgram(), 0);
  EXPECT_EQ(listener.closes, 1);
  QCoreApplication::sendPostedEvents();
}

}  // namespace
}  // namespace lumivane

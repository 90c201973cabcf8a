// The real window on an X server (xvfb-run): what Qt and the server make of it, not what we hope they do.
#include "platform/linux/SlideshowWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDropEvent>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QUrl>
#include <QWindow>
#include <latch>
#include <mutex>
#include <thread>

#include "platform/linux/QtGlContext.h"
#include "platform/linux/QtGlSurface.h"
#include "platform/linux/QtTextRenderer.h"
#include "tests/support/QtWaiting.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using ::testing::ElementsAre;

struct RecordingListener final : WindowListener {
  void windowResized(SizePt content) override {
    size = content;
    ++resizes;
  }
  void windowLiveResizeEnded() override { ++resizeEnds; }
  void windowExposed(bool shown) override { exposures.push_back(shown); }
  void windowFullScreenChanged(bool full) override { fullScreenChanges.push_back(full); }
  void keyDown(const KeyEvent& event) override { keys.push_back(event); }
  void modifiersChanged(Modifiers held) override { modifiers.push_back(held); }
  void mouseMoved(PointPt position) override { moves.push_back(position); }
  void menuRequested(PointPt position) override { menus.push_back(position); }
  void fileDropped(const std::string& path) override { dropped.push_back(path); }
  void windowWillClose() override { ++closes; }

  SizePt size;
  std::vector<std::string> dropped;
  int resizes = 0;
  int resizeEnds = 0;
  int closes = 0;
  std::vector<bool> exposures;
  std::vector<bool> fullScreenChanges;
  std::vector<KeyEvent> keys;
  std::vector<Modifiers> modifiers;
  std::vector<PointPt> moves;
  std::vector<PointPt> menus;
};

class SlideshowWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    auto context = makeGlContext(wantedGlFormats());
    if (!context) GTEST_SKIP() << context.error();
    context_ = std::move(context).value();
    window_ = std::make_unique<SlideshowWindow>(context_->format(), listener_);
  }
  void showAt(const RectPt& frame) {
    window_->placeAt(frame);
    window_->show();
    ASSERT_TRUE(waitUntil([&] { return window_->isExposed(); }));
  }
  void send(QEvent& event) { QCoreApplication::sendEvent(&window_->qtWindow(), &event); }
  void press(int key, const QString& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    send(event);
  }
  void moveMouseTo(QPointF place) {
    const QPointF global = place + window_->qtWindow().position();
    QMouseEvent event(QEvent::MouseMove, place, global, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    send(event);
  }

  RecordingListener listener_;
  std::unique_ptr<QOpenGLContext> context_;
  std::unique_ptr<SlideshowWindow> window_;
};

TEST_F(SlideshowWindowTest, OpensWhereItWasPlaced) {
  const int screenHeight = QGuiApplication::primaryScreen()->geometry().height();
  showAt({{100, 50}, {640, 400}});
  EXPECT_EQ(window_->frame(), (RectPt{{100, 50}, {640, 400}}));
  EXPECT_EQ(window_->qtWindow().geometry(), QRect(100, screenHeight - 450, 640, 400));
  EXPECT_EQ(window_->displayNumber(), 1U);
  EXPECT_EQ(window_->surfaceState().sizePx(), (SizePx{640, 400}));
  EXPECT_TRUE(window_->surfaceState().drawable());
  EXPECT_THAT(listener_.exposures, ::testing::Each(true));
  EXPECT_FALSE(window_->isFullScreen() || window_->isMaximized() || window_->isMinimized());
}

TEST_F(SlideshowWindowTest, AFrameOnNoDisplayIsBroughtBack) {
  showAt({{90'000, -90'000}, {90'000, 300}});
  EXPECT_TRUE(QGuiApplication::primaryScreen()->geometry().contains(window_->qtWindow().geometry()));
}

TEST_F(SlideshowWindowTest, TellsWhenTheSizeHasComeToRest) {
  showAt({{0, 0}, {640, 400}});
  ASSERT_TRUE(waitUntil([&] { return listener_.resizeEnds > 0; }));
  const int ends = listener_.resizeEnds;
  for (int width = 641; width < 700; ++width) {
    window_->qtWindow().resize(width, 400);
    runPendingEvents();
  }
  EXPECT_EQ(listener_.resizeEnds, ends);
  ASSERT_TRUE(waitUntil([&] { return listener_.resizeEnds > ends; }));
  EXPECT_EQ(listener_.resizeEnds, ends + 1);
  EXPECT_EQ(listener_.size, (SizePt{699, 400}));
  EXPECT_EQ(window_->surfaceState().sizePx(), (SizePx{699, 400}));
}

TEST_F(SlideshowWindowTest, GoesToFullScreenAndBack) {
  showAt({{100, 50}, {640, 400}});
  const auto atRest = [this] {
    const int ends = listener_.resizeEnds;
    return waitUntil([&] { return listener_.resizeEnds > ends; });
  };
  ASSERT_TRUE(atRest());
  window_->toggleFullScreen();
  ASSERT_TRUE(atRest());
  EXPECT_TRUE(window_->isFullScreen());
  EXPECT_EQ(window_->qtWindow().geometry(), QGuiApplication::primaryScreen()->geometry());
  const QSize screen = QGuiApplication::primaryScreen()->size();
  EXPECT_EQ(window_->surfaceState().sizePx(), (SizePx{screen.width(), screen.height()}));
  window_->toggleFullScreen();
  ASSERT_TRUE(atRest());
  EXPECT_FALSE(window_->isFullScreen());
  EXPECT_EQ(window_->frame(), (RectPt{{100, 50}, {640, 400}}));
  EXPECT_THAT(listener_.fullScreenChanges, ElementsAre(true, false));
}

TEST_F(SlideshowWindowTest, AFullScreenAskedForBeforeItOpensHolds) {
  window_->toggleFullScreen();
  window_->show();
  ASSERT_TRUE(waitUntil([&] { return window_->isExposed(); }));
  EXPECT_TRUE(window_->isFullScreen());
  EXPECT_TRUE(
      waitUntil([&] { return window_->qtWindow().size() == QGuiApplication::primaryScreen()->size(); }));
}

TEST_F(SlideshowWindowTest, KeysComeAsPlainData) {
  showAt({{0, 0}, {640, 400}});
  press(Qt::Key_Z, "z");
  press(Qt::Key_Escape, "\x1B");
  press(Qt::Key_Q, "\x11", Qt::ControlModifier);
  EXPECT_THAT(listener_.keys,
              ElementsAre(KeyEvent{U'z'}, KeyEvent{kEscapeCharacter}, KeyEvent{U'q', kControlModifier}));
}

TEST_F(SlideshowWindowTest, ModifierKeysAreNoKeys) {
  showAt({{0, 0}, {640, 400}});
  press(Qt::Key_Meta, "");
  QKeyEvent release(QEvent::KeyRelease, Qt::Key_Meta, Qt::MetaModifier);
  send(release);
  press(Qt::Key_CapsLock, "");
  EXPECT_THAT(listener_.modifiers, ElementsAre(kMetaModifier, kNoModifiers, kNoModifiers));
  EXPECT_TRUE(listener_.keys.empty());
}

TEST_F(SlideshowWindowTest, AsksForTheMenuByKeyAndMouse) {
  showAt({{0, 0}, {640, 400}});
  press(Qt::Key_F10, "");
  QMouseEvent click(QEvent::MouseButtonPress, QPointF(10, 30), QPointF(10, 30), Qt::RightButton,
                    Qt::RightButton, Qt::NoModifier);
  send(click);
  EXPECT_THAT(listener_.menus, ElementsAre(PointPt{320, 200}, PointPt{10, 370}));
  EXPECT_TRUE(listener_.keys.empty());
}

TEST_F(SlideshowWindowTest, ReportsMouseMovesOnlyWhenAskedAndOnlyRealOnes) {
  showAt({{0, 0}, {640, 400}});
  moveMouseTo({1, 1});
  moveMouseTo({2, 2});
  EXPECT_TRUE(listener_.moves.empty());
  window_->setReportsMouseMoves(true);
  moveMouseTo({3, 3});  // only where it rests
  moveMouseTo({3, 3});
  EXPECT_TRUE(listener_.moves.empty());
  moveMouseTo({4, 3});
  EXPECT_THAT(listener_.moves, ElementsAre(PointPt{4, 397}));
}

TEST_F(SlideshowWindowTest, TakesWhatIsDroppedAndAsksNoDiskWhatItIs) {
  showAt({{0, 0}, {640, 400}});
  const auto drop = [&](const QString& url) {
    QMimeData data;
    data.setUrls({QUrl(url)});
    QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::NoButton, Qt::NoModifier);
    send(event);
    return event.isAccepted();
  };
  EXPECT_TRUE(drop("file:///nowhere/at/all/"));
  EXPECT_TRUE(drop("file:///srv/two%20words/../%C3%A4.jpg"));
  EXPECT_FALSE(drop("https://lumivane.example/picture.jpg"));
  EXPECT_FALSE(drop("file:nowhere"));
  EXPECT_THAT(listener_.dropped, ElementsAre("/nowhere/at/all", "/srv/\u00E4.jpg"));
}

TEST_F(SlideshowWindowTest, SaysOnceThatItCloses) {
  showAt({{0, 0}, {640, 400}});
  window_->close();
  window_->close();
  EXPECT_EQ(listener_.closes, 1);
  EXPECT_FALSE(listener_.exposures.back());
  EXPECT_FALSE(window_->surfaceState().drawable());
}

TEST_F(SlideshowWindowTest, SaysThatItIsHiddenBeforeTheSurfaceGoes) {
  showAt({{0, 0}, {640, 400}});
  window_.reset();
  EXPECT_FALSE(listener_.exposures.back());
  EXPECT_EQ(std::count(listener_.exposures.begin(), listener_.exposures.end(), false), 1);
}

TEST_F(SlideshowWindowTest, RealKeysReachIt) {
  const QString tool = QStandardPaths::findExecutable("xdotool");
  if (tool.isEmpty()) GTEST_SKIP() << "xdotool is not installed";
  showAt({{0, 0}, {640, 400}});
  ASSERT_TRUE(waitUntil([&] { return QGuiApplication::focusWindow() == &window_->qtWindow(); }));
  QProcess process;
  process.start(tool, {"key", "z", "Left", "shift+z", "ctrl+q", "Return", "BackSpace"});
  ASSERT_TRUE(waitUntil([&] { return listener_.keys.size() == 6; }));
  EXPECT_THAT(listener_.keys, ElementsAre(KeyEvent{U'z'}, KeyEvent{kLeftArrowCharacter},
                                          KeyEvent{U'Z', kShiftModifier}, KeyEvent{U'q', kControlModifier},
                                          KeyEvent{kReturnCharacter}, KeyEvent{kDeleteCharacter}));
  EXPECT_THAT(listener_.modifiers, ElementsAre(kShiftModifier, kNoModifiers, kControlModifier, kNoModifiers));
  ASSERT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }));
}

// Draws one colour on a thread of its own, as often as asked.
void fillOnAnotherThread(QtGlSurface& surface, float red, float green, float blue) {
  bool drawn = false;
  std::jthread thread([&] {
    ASSERT_TRUE(surface.makeCurrent());
    QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
    const SizePx size = surface.sizePx();
    gl->glViewport(0, 0, size.width, size.height);
    gl->glClearColor(red, green, blue, 1);
    gl->glClear(GL_COLOR_BUFFER_BIT);
    surface.swapBuffers();
    gl->glFinish();
    surface.doneCurrent();
    drawn = true;
  });
  thread.join();
  ASSERT_TRUE(drawn);
}

TEST_F(SlideshowWindowTest, AnotherThreadDrawsToIt) {
  const QSurfaceFormat format = context_->format();
  EXPECT_TRUE(format.renderableType() == QSurfaceFormat::OpenGLES ? format.majorVersion() >= 3
                                                                  : format.version() >= qMakePair(3, 3));
  QtGlSurface surface(*window_, std::move(context_));
  EXPECT_FALSE(surface.drawable());
  EXPECT_FALSE(surface.makeCurrent());
  showAt({{100, 50}, {640, 400}});
  EXPECT_TRUE(surface.drawable());
  EXPECT_GT(surface.refreshInterval().count(), 0.001);
  EXPECT_LT(surface.refreshInterval().count(), 0.1);
  // One thread after the other: the context goes to whoever draws.
  fillOnAnotherThread(surface, 0, 0, 1);
  fillOnAnotherThread(surface, 1, 0, 0);
  const auto middle = [&] {
    const QPoint place = window_->qtWindow().geometry().center();
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), 1, 1)
        .toImage()
        .pixelColor(0, 0);
  };
  EXPECT_TRUE(waitUntil([&] { return middle() == QColor(255, 0, 0); }));
  window_->close();
  EXPECT_FALSE(surface.drawable());
  EXPECT_FALSE(surface.makeCurrent());
}

TEST(MakeGlContext, NamesWhatWasTried) {
  QSurfaceFormat impossible;
  impossible.setRenderableType(QSurfaceFormat::OpenGL);
  impossible.setVersion(9, 9);
  const std::array formats{impossible, impossible};
  const auto context = makeGlContext(formats);
  ASSERT_FALSE(context.ok());
  EXPECT_EQ(context.error(), "no usable OpenGL (tried: OpenGL 9.9, OpenGL 9.9)");
}

}  // namespace
}  // namespace lumivane

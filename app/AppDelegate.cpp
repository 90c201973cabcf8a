#include "app/AppDelegate.h"

#include <utility>

#include "engine/PreferencesSheet.h"
#include "platform/linux/QtGlContext.h"

namespace lumivane {
namespace {

constexpr std::chrono::seconds kUnseenForLong{1};

}  // namespace

AppDelegate::AppDelegate(const Host& host, QtMainLoop& mainLoop, SleepNotes& sleepNotes, KeepAwake& keepAwake,
                         FrameWatcher* frames)
    : host_(host),
      mainLoop_(mainLoop),
      sleepNotes_(sleepNotes),
      keepAwake_(keepAwake),
      frames_(frames),
      launcher_(host.files, host.log, host.folders.state),
      place_(host.files, host.log, host.folders.state),
      masterViewController_(host) {}

AppDelegate::~AppDelegate() {
  applicationWillTerminate();
}

void AppDelegate::applicationWillFinishLaunching(const std::vector<std::string>& arguments) {
  // Every run begins after a visible gap in the log.
  host_.log.information("\n");
  host_.log.information("\n");
  host_.log.information("LumivaneApp starting");
  launcher_.takeRequest(flags_, host_.clock.wallTime());
  for (const std::string& argument : arguments) addOrLog(flags_, argument, host_.log);
}

// The first picture is asked for as early as can be: it is read and decoded while the GL, which takes long to load, gets ready.
Result<Done> AppDelegate::applicationDidFinishLaunching() {
  const std::vector<QSurfaceFormat> formats = wantedGlFormats();
  openWindow(formats.front());
  masterViewController_.viewDidLoad({{0, 0}, window_->frame().size});
  LumivaneView& view = masterViewController_.saver();
  moveToDisplay(window_->displayNumber());
  if (!view.imageFiles().empty()) view.animateOneFrame();
  if (const Result<Done> drawing = startDrawing(formats); !drawing) return drawing;

  window_->show();
  if (flags_.fullScreen) window_->toggleFullScreen();
  if (window_->displayNumber() != display_) moveToDisplay(window_->displayNumber());
  view.viewDidEndLiveResize();
  view.setWindowResizingHappened(false);
  view.setScreensaverSurrogateMode(flags_.surrogate);
  launcher_.writeAliveFile(host_.clock.wallTime());
  if (flags_.surrogate) startSurrogateMode();
  return Done{};
}

Result<Done> AppDelegate::startDrawing(const std::vector<QSurfaceFormat>& formats) {
  auto context = makeGlContext(formats);
  if (!context) return Error{context.error()};
  window_->setFormat(context.value()->format());
  surface_ = std::make_unique<QtGlSurface>(*window_, std::move(context.value()));
  firstFrame_ = std::make_unique<FirstFrame>(
      mainLoop_, [this] { helpTheFirstStart(); }, frames_);
  renderThread_ = std::make_unique<RenderThread>(*surface_, host_.clock, host_.log, firstFrame_.get());
  commit_ = std::make_unique<LayerTreeCommit>(
      masterViewController_.saver().mainLayer(), *window_,
      [this](std::shared_ptr<const FrameSnapshot> snapshot) { renderThread_->publish(std::move(snapshot)); },
      host_.clock, mainLoop_);
  mainLoop_.atEndOfTurn([this] { endOfTurn(); });
  return Done{};
}

void AppDelegate::applicationWillTerminate() {
  masterViewController_.viewWillDisappear();
  launcher_.removeAliveFile();
}

void AppDelegate::openWindow(const QSurfaceFormat& format) {
  window_ = std::make_unique<SlideshowWindow>(format, *this);
  window_->setTitle("Lumivane");
  if (const std::optional<RectPt> frame = place_.load()) window_->placeAt(*frame);
  pointer_ = std::make_unique<PointerHiding>(*window_, host_.clock, host_.mainLoop);
  menu_ = std::make_unique<MainMenu>(window_->qtWindow(), [this](MenuCommand command) { perform(command); });
}

// As a screen saver does: no pointer, and an end when the machine or its screens go to sleep.
void AppDelegate::startSurrogateMode() {
  pointer_->hideForGood();
  sleepNotes_.observe([this] { host_.application.terminate(); });
}

// Nobody has to find the menu by luck before there is a picture to see.
void AppDelegate::helpTheFirstStart() {
  if (flags_.surrogate || masterViewController_.saver().hasFolder()) return;
  masterViewController_.showPreferences();
}

void AppDelegate::endOfTurn() {
  commit_->commit();
  rememberPlace();
  keepAwake_.keepAwake(isWatched());
  masterViewController_.turnEnded();
}

// Nobody watches a show that is paused or hidden, and one in a window stands beside other work.
bool AppDelegate::isWatched() const {
  return window_ != nullptr && window_->isFullScreen() && animating_ && !flags_.surrogate &&
         masterViewController_.saver().isRunning();
}

void AppDelegate::perform(MenuCommand command) {
  switch (command) {
    case MenuCommand::Preferences:
      return masterViewController_.showPreferences();
    case MenuCommand::Help:
      return masterViewController_.showHelp();
    case MenuCommand::FullScreen:
      return masterViewController_.keyDown({U'f', kNoModifiers, false});
    case MenuCommand::Quit:
      return host_.application.terminate();
  }
}

void AppDelegate::moveToDisplay(DisplayNumber display) {
  display_ = display;
  masterViewController_.viewWillMoveToWindow(window_.get());
}

void AppDelegate::windowResized(SizePt content) {
  masterViewController_.saver().adjustLayersToNewSize({{0, 0}, content});
}

void AppDelegate::windowLiveResizeEnded() {
  masterViewController_.saver().viewDidEndLiveResize();
}

void AppDelegate::windowExposed(bool exposed) {
  renderThread_->setExposed(exposed);
  unseen_.reset();
  if (!exposed) {
    stopAnimatingUnlessSeenAgain();
  } else if (!window_->isMinimized()) {
    setAnimating(true);
  }
}

// A busy Wayland compositor that is late with a frame counts as not showing the window for a moment: no reason to
// stop the show and to write the last-run record.
void AppDelegate::stopAnimatingUnlessSeenAgain() {
  unseen_ = std::make_shared<bool>(true);
  mainLoop_.after(kUnseenForLong, [this, unseen = std::weak_ptr(unseen_)] {
    if (!unseen.expired()) setAnimating(false);
  });
}

void AppDelegate::windowMinimized(bool minimized) {
  setAnimating(!minimized);
}

void AppDelegate::setAnimating(bool animating) {
  if (std::exchange(animating_, animating) == animating) return;
  if (animating) {
    masterViewController_.saver().startAnimation();
  } else {
    masterViewController_.saver().stopAnimation();
  }
}

void AppDelegate::windowDisplayChanged(DisplayNumber display) {
  if (display == display_ || display == 0) return;
  moveToDisplay(display);
  masterViewController_.saver().viewDidEndLiveResize();
}

void AppDelegate::windowScaleChanged(double scale) {
  masterViewController_.saver().setContentsScale(scale);
}

// The program ends with its window, whatever else may still be open.
void AppDelegate::windowWillClose() {
  rememberPlace();
  if (ordinaryFrame_) place_.save(*ordinaryFrame_);
  masterViewController_.saver().saveLastRunInfo();
  masterViewController_.viewWillDisappear();
  host_.application.terminate();
}

void AppDelegate::displayLost() {
  host_.log.error("The connection to the display server broke.");
  if (window_ != nullptr) masterViewController_.saver().saveLastRunInfo();
  if (ordinaryFrame_) place_.save(*ordinaryFrame_);
  launcher_.removeAliveFile();
}

void AppDelegate::rememberPlace() {
  if (window_ == nullptr || window_->isFullScreen() || window_->isMaximized() || window_->isMinimized())
    return;
  ordinaryFrame_ = window_->frame();
}

void AppDelegate::keyDown(const KeyEvent& event) {
  if (const auto command = menuCommandOf(event)) return perform(*command);
  masterViewController_.keyDown(event);
}

void AppDelegate::modifiersChanged(Modifiers held) {
  masterViewController_.flagsChanged(held);
}

void AppDelegate::mouseMoved(PointPt /*position*/) {
  if (flags_.surrogate) return masterViewController_.mouseMoved();
  pointer_->mouseMoved();
}

void AppDelegate::menuRequested(PointPt position) {
  if (flags_.surrogate && window_->isFullScreen()) return host_.application.terminate();
  menu_->popUp(position, window_->isFullScreen());
}

void AppDelegate::fileDropped(const std::string& path) {
  PreferencesSheet* sheet = masterViewController_.saver().preferencesSheet();
  if (sheet != nullptr) sheet->fileDropped(path);
}

}  // namespace lumivane

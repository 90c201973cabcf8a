#include "app/AppDelegate.h"

#include <utility>

#include "platform/linux/QtGlContext.h"

namespace lumivane {
namespace {

constexpr std::chrono::seconds kUnseenForLong{1};

}  // namespace

AppDelegate::AppDelegate(const Host& host, QtMainLoop& mainLoop)
    : host_(host),
      mainLoop_(mainLoop),
      launcher_(host.files, host.log, host.folders.state),
      masterViewController_(host) {}

AppDelegate::~AppDelegate() {
  masterViewController_.viewWillDisappear();
  launcher_.removeAliveFile();
}

void AppDelegate::applicationWillFinishLaunching(const std::vector<std::string>& arguments) {
  // Every run begins after a visible gap in the log.
  host_.log.information("\n");
  host_.log.information("\n");
  host_.log.information("LumivaneApp starting");
  launcher_.takeRequest(flags_, host_.clock.wallTime());
  for (const std::string& argument : arguments) addOrLog(flags_, argument, host_.log);
}

Result<Done> AppDelegate::applicationDidFinishLaunching() {
  auto context = makeGlContext(wantedGlFormats());
  if (!context) return Error{context.error()};
  window_ = std::make_unique<SlideshowWindow>(context.value()->format(), *this);
  window_->setTitle("Lumivane");
  window_->setIconName("lumivane");
  surface_ = std::make_unique<QtGlSurface>(*window_, std::move(context.value()));
  renderThread_ = std::make_unique<RenderThread>(*surface_, host_.clock, host_.log);

  masterViewController_.viewDidLoad({{0, 0}, window_->frame().size});
  LumivaneView& view = masterViewController_.saver();
  commit_ = std::make_unique<LayerTreeCommit>(
      view.mainLayer(), *window_,
      [this](std::shared_ptr<const FrameSnapshot> snapshot) { renderThread_->publish(std::move(snapshot)); },
      host_.clock, mainLoop_);
  mainLoop_.atEndOfTurn([this] { commit_->commit(); });

  window_->show();
  if (flags_.fullScreen) window_->toggleFullScreen();
  moveToDisplay(window_->displayNumber());
  view.viewDidEndLiveResize();
  view.setWindowResizingHappened(false);
  view.setScreensaverSurrogateMode(flags_.surrogate);
  launcher_.writeAliveFile(host_.clock.wallTime());
  return Done{};
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

void AppDelegate::windowWillClose() {
  masterViewController_.saver().saveLastRunInfo();
  masterViewController_.viewWillDisappear();
}

void AppDelegate::keyDown(const KeyEvent& event) {
  masterViewController_.keyDown(event);
}

void AppDelegate::modifiersChanged(Modifiers held) {
  masterViewController_.flagsChanged(held);
}

}  // namespace lumivane

// How a view learns on which display it stands, starts for it, and follows its size.
#include <algorithm>

#include "engine/CollectionScan.h"
#include "engine/FormattedText.h"
#include "engine/LumivaneView.h"
#include "engine/PreferencesSheet.h"
#include "platform/PrintableText.h"
#include "settings/UniqueDisplayNames.h"

namespace lumivane {
namespace {

constexpr double kTallFrame = 900;  // points; a taller one has room for a wider margin
constexpr double kWideMargin = 14;
constexpr double kNarrowMargin = 7;
constexpr float kStaggerSeconds = 1.1F;  // between the first pictures of neighbouring displays

constexpr unsigned kSmallestHelpFont = 10;
constexpr unsigned kLargestHelpFont = 30;
constexpr unsigned kLargestHelpFontOnSmallScreens = 16;
constexpr double kSmallScreenWidth = 800;
constexpr double kSmallScreenHeight = 400;
constexpr double kSmallScreenHelpScale = 0.6;

// A window on no display that the window system lists counts as standing on the first.
std::size_t positionOf(DisplayNumber display, const std::vector<DisplayNumber>& all) {
  const auto found = std::find(all.begin(), all.end(), display);
  return found == all.end() ? 0 : static_cast<std::size_t>(found - all.begin());
}

double helpFontSizeFor(std::uint32_t fontSize, SizePt screen) {
  const unsigned size = std::clamp(fontSize, kSmallestHelpFont, kLargestHelpFont);
  const bool smallScreen = screen.width < kSmallScreenWidth || screen.height < kSmallScreenHeight;
  return size > kLargestHelpFontOnSmallScreens && smallScreen ? kSmallScreenHelpScale * size : size;
}

}  // namespace

void LumivaneView::viewWillMoveToWindow(HostWindow* window) {
  window_ = window;
  if (window == nullptr) {
    logMessage("viewWillMoveToWindow was called with NULL window.", false);
    return;
  }
  drawRect_ = window->frame();
  contentsScale_ = window->scale();
  logMessage(formatted("viewWillMoveToWindow: origin = %f , %f ;  size = %f , %f", drawRect_.origin.x,
                       drawRect_.origin.y, drawRect_.size.width, drawRect_.size.height),
             false);
  collectionScan_->breakOff();
  displayID_ = window->displayNumber();
  listDisplays();
  if (preferencesSheet_) preferencesSheet_->fillDisplayChooser();
  loadPreferences(displayName_);
  loadImageList(displayName_);
  loadLastRunInfo(displayName_);
  adjustLayersToNewSize(drawRect_);
  forgetPicturesInHand();
  if (preferencesSheet_) preferencesSheet_->loadHelpDocument();
}

void LumivaneView::listDisplays() {
  allScreenIDs_.clear();
  allScreenNames_.clear();
  for (const Display& display : host_.displays.attached()) {
    allScreenIDs_.push_back(display.number);
    allScreenNames_.push_back(display.name);
    logMessage("display: " + printable(display.name) + " , id: " + std::to_string(display.number), false);
  }
  logMessage(std::to_string(allScreenIDs_.size()) + " displays attached", false);

  const std::size_t position = positionOf(displayID_, allScreenIDs_);
  zoomIn_ = (position & 1U) != 0;
  makeNamesUnique(allScreenNames_, allScreenIDs_);
  displayName_ = position < allScreenNames_.size() ? allScreenNames_[position] : "unknown";
  time_offset_ = static_cast<float>(position) * kStaggerSeconds;
  logMessage("our display = " + printable(displayName_) + " (" + std::to_string(displayID_) + ")", false);
}

void LumivaneView::editDisplay(std::size_t position) {
  stopAnimation();
  saveConfig();
  displayName_ = allScreenNames_[position];
  displayID_ = allScreenIDs_[position];
  mainDirectoryLocation_.reset();
  loadPreferences(displayName_);
  loadImageList(displayName_);
  prefetch_.empty();
  history_.clearAtNextStore();
}

void LumivaneView::forgetPicturesInHand() {
  prefetch_.empty();
  prefetch_.prefetch_image_props_.reset();
  prefetch_.prefetchNextImageFailed_ = false;
  abandonPrefetch();
  current_image_.reset();
  current_image_props_.reset();
  removeFromMainLayer(prefetchLayer_);
  removeFromMainLayer(formerLayer_);
}

void LumivaneView::placeTextLayer(double screenHeight) {
  const double margin = screenHeight > kTallFrame ? kWideMargin : kNarrowMargin;
  textLayer_->edit([margin](LayerProperties& p) {
    p.position = {margin, margin};
    p.shadow.radius = margin * 0.5;
  });
}

void LumivaneView::adjustLayersToNewSize(RectPt rectangle) {
  mainLayer_->edit([&](LayerProperties& p) { p.bounds = {{0, 0}, rectangle.size}; });
  placeTextLayer(rectangle.size.height);
  help_layer_->edit([&](LayerProperties& p) {
    p.position = {rectangle.size.width * 0.5, rectangle.size.height * 0.5};
  });
  helpFontSize_ = helpFontSizeFor(settings_.fontSize_, rectangle.size);
  makeTextLayerRectangle(*help_layer_, helpFontSize_, helptext_, false);
  refreshTextLayer();
}

void LumivaneView::viewDidEndLiveResize() {
  drawRect_ = window_ != nullptr ? RectPt{{0, 0}, window_->frame().size} : RectPt{};
  adjustLayersToNewSize(drawRect_);
  startNewCycle();
  windowResizingHappened_ = true;
}

void LumivaneView::setContentsScale(double scale) {
  contentsScale_ = scale;
  adjustLayersToNewSize(drawRect_);
}

}  // namespace lumivane

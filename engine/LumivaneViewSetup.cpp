// How a view comes into being: its first log lines, its layers, its queue.
#include <array>
#include <cstdio>

#include "engine/CollectionScan.h"
#include "engine/FormattedText.h"
#include "engine/LumivaneView.h"
#include "engine/PhotosAuthorizationText.h"
#include "engine/PreferencesSheet.h"

namespace lumivane {
namespace {

constexpr Color kWhite{1, 1, 1, 1};
constexpr double kTextShadowOpacity = 0.5;

void logBanner(const Host& host, const void* identity, RectPt frame) {
  Log& log = host.log;
  std::string version = host.programVersion.shortVersion;
  if (version.empty()) {
    log.error("CFBundleShortVersionString not found!");
    version = "?";
  }
  const std::string build = host.programVersion.build.empty() ? "??" : host.programVersion.build;
  log.information(formatted("LumivaneApp started (version: %s (#%s)) (id = %p)", version.c_str(),
                            build.c_str(), identity));
  log.information("\n");
  const SystemVersion& system = host.systemVersion;
  log.information(
      formatted("macOS version: %ld.%ld.%ld", system.majorNumber, system.minorNumber, system.patchNumber));
  log.information("\n");
  log.information(formatted("initWithFrame: origin = %f , %f ;  size = %f , %f", frame.origin.x,
                            frame.origin.y, frame.size.width, frame.size.height));
}

}  // namespace

std::unique_ptr<LumivaneView> LumivaneView::initWithFrame(RectPt frame, bool /*isPreview*/,
                                                          const Host& host) {
  return std::unique_ptr<LumivaneView>(new LumivaneView(frame, host));
}

LumivaneView::LumivaneView(RectPt frame, const Host& host)
    : host_(host),
      drawRect_(frame),
      last_scan_(host.clock.wallTime()),
      order_(host.random, host.log),
      history_(host.memory, host.log),
      lastRunRecord_(host.files, host.log),
      deletion_(host.queues, host.mainLoop, host.files, host.trash),
      folderLookup_(host.boundedCalls, host.mainLoop, host.log),
      preferences_(host.settings, host.log),
      collectionScan_(std::make_unique<CollectionScan>(*this, host_)) {
  logBanner(host_, this, frame);
  makeLayers(frame);
  if (host_.geocoder == nullptr) logMessage("Initializing the geocoder failed!", true);
  appSupportDir_ = host_.folders.data;
  if (appSupportDir_.empty()) {
    logMessage("could not get application support directory!", true);
    return;
  }
  host_.random.seed(static_cast<std::uint64_t>(host_.clock.now().time_since_epoch().count()));
  setUpPhotoLibrary();
  if (host_.configureSheet != nullptr) preferencesSheet_ = std::make_unique<PreferencesSheet>(*this, host_);
  prefetch_queue_ = host_.queues.make("LumivanePrefetchQueue");
}

// The queues' running jobs may still hold on to the decoder and the files; they end before anything else goes.
LumivaneView::~LumivaneView() {
  collectionScan_->end();
  prefetch_queue_.reset();
}

void LumivaneView::makeLayers(RectPt frame) {
  mainLayer_ = std::make_unique<Layer>();
  mainLayer_->edit([&](LayerProperties& p) {
    p.anchorPoint = {0, 0};
    p.bounds = {{0, 0}, frame.size};
  });
  currentLayer_ = mainLayer_->addSublayer(std::make_unique<Layer>());

  textLayer_ = mainLayer_->addSublayer(std::make_unique<Layer>());
  textLayer_->edit([&](LayerProperties& p) {
    p.bounds = frame;
    p.anchorPoint = {0, 0};
    p.shadow.color = {0, 0, 0, 1};
    p.shadow.opacity = kTextShadowOpacity;
  });
  placeTextLayer(frame.size.height);
  refreshTextLayer();

  help_layer_ = mainLayer_->addSublayer(std::make_unique<Layer>());
  help_layer_->edit([&](LayerProperties& p) {
    p.zPosition = 1;
    p.position = {frame.size.width * 0.5, frame.size.height * 0.5};
    p.hidden = true;
    p.shadow.opacity = 1;
    p.shadow.radius = 4;
    p.backgroundColor = {0.5F, 0.5F, 0.5F, 0.3F};
  });
}

void LumivaneView::setUpPhotoLibrary() {
  collectionScan_->loadAlbums();
  logMessage("Running on macOS 10.13 or higher.", false);
  const AuthorizationText status = photosAuthorizationText(host_.photosAuthorization);
  logMessage("Photos authorization status: " + std::string(status.text), status.isError);
}

}  // namespace lumivane

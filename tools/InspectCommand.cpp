// lumivane inspect
#include <charconv>
#include <filesystem>
#include <limits>
#include <map>
#include <system_error>

#include "platform/PrintableText.h"
#include "settings/SettingsStore.h"
#include "tools/InspectedPicture.h"
#include "tools/PicturePreview.h"
#include "tools/PictureProcess.h"
#include "tools/ProgressLine.h"
#include "tools/Tool.h"

namespace lumivane {
namespace {

constexpr std::string_view kHelp =
    "Usage: lumivane inspect [--json] [--preview DIR] [--min-size N] FILE...\n"
    "\n"
    "Says what the slideshow makes of each picture: whether it is shown, and if not, why;\n"
    "its size, orientation, position, place, keywords, caption and date, and the lines of\n"
    "text that stand on the screen with it.\n"
    "\n"
    "  --json         one JSON object a line\n"
    "  --preview DIR  also write each decoded picture, at most 256 pixels on its longer\n"
    "                 side, as DIR/<file name>.png\n"
    "  --min-size N   the shortest side, in pixels, of pictures that are shown; else as\n"
    "                 the display is set that the slideshow opens on\n";

constexpr int kPreviewPixels = 256;
constexpr std::uint32_t kUsualSmallestSize = 300;

// Writes the previews into one folder. Of several files with the same name each gets a preview of its own.
class PreviewFolder {
 public:
  PreviewFolder(Files& files, std::string folder) : files_(files), folder_(std::move(folder)) {}

  Result<Done> write(const InspectedPicture& picture) {
    const Result<std::string> png = previewPng(*picture.image, kPreviewPixels);
    if (!png) return Error{printable(picture.path) + ": " + png.error()};
    const std::string name = std::filesystem::path(picture.path).filename().string();
    const int count = ++written_[name];
    const std::string number = count == 1 ? "" : "." + std::to_string(count);
    return files_.writeAtomically(folder_ + "/" + name + number + ".png", png.value());
  }

 private:
  Files& files_;
  const std::string folder_;
  std::map<std::string, int> written_;
};

// The rules of the display that the show opens on.
InspectRules rulesOfDisplay(const Tool& tool) {
  SettingsStore store(tool.files, tool.log, tool.folders.config);
  const std::string display = tool.displays.primaryName().value_or("unknown");
  const auto domain = store.defaultsForModuleWithName(settingsDomainName(display));
  if (domain == nullptr) return {kUsualSmallestSize, {}, true};
  domain->registerDefaults(registeredDefaults(emptyBookmarkList()));
  const DisplaySettings settings = loadSettings(domain.get());
  return {settings.excludeSize_,
          {settings.displayFilename_, settings.showImagePath_, settings.showFileExtension_},
          settings.showImageInfo_};
}

// The same, but for a smallest size that was given.
Result<InspectRules> rulesFor(const Tool& tool, const Arguments& arguments) {
  InspectRules rules = rulesOfDisplay(tool);
  const std::string* given = arguments.valueOf("--min-size");
  if (given == nullptr) return rules;
  const auto [end, error] = std::from_chars(given->data(), given->data() + given->size(), rules.excludeSize);
  if (error == std::errc() && end == given->data() + given->size()) return rules;
  return Error{"--min-size takes a number of pixels, not \"" + printable(*given) + "\""};
}

// Opens the file of places when the first picture with a position asks for it. Without it the show goes on with
// coordinates, and so does this.
class PlacesOnDemand {
 public:
  explicit PlacesOnDemand(const Tool& tool) : tool_(tool) {}

  Result<Placemark> placeAt(double latitude, double longitude) {
    if (!gazetteer_) {
      gazetteer_.emplace(openGazetteer(tool_.environment));
      if (!*gazetteer_) tool_.err << "lumivane: places cannot be named: " << gazetteer_->error() << '\n';
    }
    if (!*gazetteer_) return Error{gazetteer_->error()};
    return gazetteer_->value().placeAt(latitude, longitude);
  }

 private:
  const Tool& tool_;
  std::optional<Result<Gazetteer>> gazetteer_;
};

ExitStatus inspect(const Tool& tool, const Arguments& arguments, const InspectRules& rules) {
  PictureProcess process(tool);
  PlacesOnDemand places(tool);
  const PlaceLookup placeAt = [&](double latitude, double longitude) {
    return places.placeAt(latitude, longitude);
  };
  std::optional<PreviewFolder> previews;
  if (const std::string* folder = arguments.valueOf("--preview")) previews.emplace(tool.files, *folder);
  ProgressLine progress(tool.err, tool.onTerminal && arguments.operands.size() > 1);
  ExitStatus status = ExitStatus::Done;
  std::size_t done = 0;
  for (const std::string& path : arguments.operands) {
    progress.showShare(done++, arguments.operands.size());
    const InspectedPicture picture = inspectPicture(process.decoder(), path, rules, placeAt);
    progress.clear();
    tool.out << (arguments.has("--json") ? jsonLine(picture) + "\n" : readableBlock(picture)) << std::flush;
    if (!picture.couldBeOpened) status = fail(tool, printable(path) + " cannot be opened");
    if (!previews || !picture.accepted()) continue;
    if (const Result<Done> written = previews->write(picture); !written) status = fail(tool, written.error());
  }
  return status;
}

}  // namespace

ExitStatus inspectCommand(const Tool& tool, const std::vector<std::string>& words) {
  constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();
  const CheckedArguments checked = checkArguments(
      tool, words, {kHelp, {{"--json", false}, {"--preview", true}, {"--min-size", true}}, 1, kAnyNumber});
  if (checked.end) return *checked.end;
  const Result<InspectRules> rules = rulesFor(tool, checked.arguments);
  if (!rules) return badUsage(tool, rules.error());
  if (const std::string* folder = checked.arguments.valueOf("--preview")) {
    std::error_code error;
    std::filesystem::create_directories(*folder, error);
    if (error) return fail(tool, printable(*folder) + ": " + error.message());
  }
  return inspect(tool, checked.arguments, rules.value());
}

}  // namespace lumivane

#include "settings/SettingsTable.h"

#include <algorithm>
#include <limits>

namespace lumivane {
namespace {

using S = DisplaySettings;
using enum SettingType;

constexpr double kNoLimit = std::numeric_limits<double>::max();
constexpr float kSmallestZoomInFactor = 1.0F;  // itself not allowed

constexpr SettingDefault whole(std::int64_t value) {
  return value;
}
constexpr SettingDefault text(std::string_view value) {
  return value;
}
constexpr SheetRange atLeast(double smallest) {
  return {smallest, kNoLimit};
}

const std::array<SettingRow, kSettingCount> kTable{{
    {"ImageDirectoryBookmarks",
     Array,
     {},
     &S::directoryBookmarks_,
     {},
     "bookmarks of the chosen picture folders"},
    {"DurationPerImage", Integer, whole(60), &S::durationPerImage_, atLeast(4),
     "seconds each picture stays on screen"},
    {"InitZoomInFactor", Float, 1.3F, &S::initZoomInFactor_,
     atLeast(std::numeric_limits<float>::epsilon() + kSmallestZoomInFactor),
     "starting factor of the plain zoom"},
    {"ExcludeSize", Integer, whole(300), &S::excludeSize_, atLeast(50),
     "smallest side of a picture, in pixels"},
    {"ExcludekB", Integer, whole(5), &S::excludekB_, {}, "files up to this many KiB are not collected"},
    {"ShowImagePath", Bool, true, &S::showImagePath_, {}, "show the folder path"},
    {"UseSpotlight",
     Bool,
     true,
     &S::useSpotlight_,
     {},
     "collect by the desktop's index rather than by a walk"},
    {"DisplayFilename", Bool, true, &S::displayFilename_, {}, "show the file name"},
    {"ZoomIsOn", Bool, false, &S::zoomIsOn_, {}, "plain zoom"},
    {"KenBurnsIsOn", Bool, true, &S::kenBurnsIsOn_, {}, "pan and zoom"},
    {"FontSize", Integer, whole(20), &S::fontSize_, SheetRange{10, 72},
     "size of the information line, in points"},
    {"InfoDelay", Integer, whole(0), &S::infoDelay_, atLeast(0),
     "seconds until the information line is shown"},
    {"UseAlbum", Bool, false, &S::useAlbum_, {}, "show a photo album instead of a folder"},
    {"SkipPatterns",
     String,
     text(".*/thumb.*"),
     &S::skipPatterns_,
     {},
     "regular expressions of paths to skip, one a line"},
    {"DontRandomize", Bool, false, &S::dontRandomize_, {}, "show the pictures in list order"},
    {"StartWithRandom", Bool, false, &S::startWithRandom_, {}, "in list order, begin at a random picture"},
    {"AllowBlackBorders", Bool, true, &S::allowBlackBorders_, {}, "black bars beside a picture are fine"},
    {"BlackBorderAvoidance", Float, 0.0F, &S::blackBorderAvoidance_, {}, "threshold for avoiding black bars"},
    {"CrossDissolve", Bool, true, &S::crossDissolve_, {}, "pictures change by a cross-fade"},
    {"CrossDissolveDuration",
     Float,
     5.0F,
     &S::crossDissolveDuration_,
     {},
     "length of the cross-fade, in seconds"},
    {"ShowFileExtension", Bool, true, &S::showFileExtension_, {}, "the file name keeps its extension"},
    {"ShowImageInfo", Bool, true, &S::showImageInfo_, {}, "show keywords, caption, place and date"},
    {"SelectedAlbum", String, text(""), &S::selectedAlbum_, {}, "name of the chosen album"},
    {"EnableDeleteAtRuntime",
     Bool,
     false,
     &S::enableDeleteAtRuntime_,
     {},
     "the delete key moves pictures to the trash"},
}};

struct AsPropertyList {
  const std::vector<std::string>& emptyBookmarks;

  PropertyList operator()(std::monostate) const {
    PropertyListArray blobs;
    for (const std::string& bookmark : emptyBookmarks) blobs.push_back(PropertyListData{bookmark});
    return blobs;
  }
  PropertyList operator()(float value) const { return static_cast<double>(value); }
  PropertyList operator()(std::string_view value) const { return std::string(value); }
  PropertyList operator()(bool value) const { return value; }
  PropertyList operator()(std::int64_t value) const { return value; }
};

}  // namespace

const std::array<SettingRow, kSettingCount>& settingsTable() {
  return kTable;
}

const SettingRow* findSetting(std::string_view key) {
  const auto found = std::ranges::find(kTable, key, &SettingRow::key);
  return found == kTable.end() ? nullptr : &*found;
}

std::vector<std::string> emptyBookmarkList() {
  return {std::string()};
}

PropertyListDictionary registeredDefaults(const std::vector<std::string>& emptyBookmarks) {
  PropertyListDictionary defaults;
  for (const SettingRow& row : kTable) {
    defaults.insert_or_assign(std::string(row.key),
                              std::visit(AsPropertyList{emptyBookmarks}, row.registeredDefault));
  }
  return defaults;
}

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', begin)) {
    lines.emplace_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  lines.emplace_back(text.substr(begin));
  return lines;
}

std::string joinedLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    if (&line != &lines.front()) text += '\n';
    text += line;
  }
  return text;
}

}  // namespace lumivane

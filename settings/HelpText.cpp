#include "settings/HelpText.h"

namespace lumivane {
namespace {

constexpr std::string_view kWithDelete =
    "Help\n"
    "\n"
    "space          Pause advancing of images\n"
    "arrow left     Show previous image again (cursor up works, too)\n"
    "arrow right    Show next image (cursor down works, too)\n"
    "return         Reveal current picture in Finder\n"
    "delete         Move currently displayed image to Trash\n"
    "Z              Pause zooming/panning\n"
    "I              Toggle display of information at bottom\n"
    "B              Blank / unblank the screen\n"
    "F              Toggle full screen";

constexpr std::string_view kWithoutDelete =
    "Help\n"
    "\n"
    "space          Pause advancing of images\n"
    "arrow left     Show previous image again (cursor up works, too)\n"
    "arrow right    Show next image (cursor down works, too)\n"
    "return         Reveal current picture in Finder\n"
    "Z              Pause zooming/panning\n"
    "I              Toggle display of information at bottom\n"
    "B              Blank / unblank the screen\n"
    "F              Toggle full screen";

}  // namespace

std::string_view helpText(bool enableDeleteAtRuntime) {
  return enableDeleteAtRuntime ? kWithDelete : kWithoutDelete;
}

}  // namespace lumivane

// lumivane displays
#include <cmath>

#include "platform/PrintableText.h"
#include "tools/Tool.h"

namespace lumivane {
namespace {

constexpr std::string_view kHelp =
    "Usage: lumivane displays\n"
    "\n"
    "Lists the attached displays: number, name, and size in points, with tabs in between.\n"
    "The name is the one that the display's settings and pictures are kept under.\n";

}  // namespace

ExitStatus displaysCommand(const Tool& tool, const std::vector<std::string>& words) {
  const CheckedArguments checked = checkArguments(tool, words, {kHelp, {}, 0, 0});
  if (checked.end) return *checked.end;
  const std::vector<Display> displays = tool.displays.all();
  if (displays.empty()) return fail(tool, "no display server can be reached");
  for (const Display& display : displays) {
    tool.out << display.number << '\t' << printable(display.name) << '\t' << std::lround(display.size.width)
             << 'x' << std::lround(display.size.height) << '\n';
  }
  return ExitStatus::Done;
}

}  // namespace lumivane

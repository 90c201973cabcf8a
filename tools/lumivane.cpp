// The companion of the slideshow for the terminal.
#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/PrintableText.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/XdgUserFolders.h"
#include "tools/Tool.h"

namespace lumivane {
namespace {

constexpr std::string_view kHelp =
    "Usage: lumivane COMMAND [OPTION]... [ARGUMENT]...\n"
    "\n"
    "  collect   find the pictures of a folder and keep them for a display\n"
    "  albums    list the albums of a photo library\n"
    "  inspect   say what the slideshow makes of pictures\n"
    "  place     name the place at a position\n"
    "  settings  list, read and write the settings of a display\n"
    "  displays  list the attached displays\n"
    "\n"
    "Each has a --help of its own. Exit status: 0 done, 1 failed, 2 wrong usage.\n";

struct Command {
  std::string_view name;
  ExitStatus (*run)(const Tool&, const std::vector<std::string>&);
};
constexpr Command kCommands[] = {{"collect", collectCommand},   {"albums", albumsCommand},
                                 {"inspect", inspectCommand},   {"place", placeCommand},
                                 {"settings", settingsCommand}, {"displays", displaysCommand}};

ExitStatus runCommand(const Tool& tool, const std::vector<std::string>& words) {
  if (words.empty()) return badUsage(tool, "which command?");
  if (words[0] == "--help" || words[0] == "-h") {
    tool.out << kHelp;
    return ExitStatus::Done;
  }
  for (const Command& command : kCommands) {
    if (command.name == words[0]) return command.run(tool, {words.begin() + 1, words.end()});
  }
  return badUsage(tool, "unknown command " + printable(words[0]));
}

int run(int count, char** words, char** environmentEntries) {
  const Environment environment = environmentFrom(environmentEntries);
  const SystemClock clock;
  PosixFiles files;
  const bool onTerminal = ::isatty(STDERR_FILENO) == 1;
  TerminalLog log(std::cerr, onTerminal);
  AttachedDisplays displays(environment, log);
  const Tool tool{environment, clock,     files,     log, displays, xdgUserFolders(environment, files),
                  std::cout,   std::cerr, onTerminal};
  const ExitStatus status = runCommand(tool, {words + std::min(count, 1), words + count});
  std::cout.flush();
  if (!std::cout) return static_cast<int>(fail(tool, "standard output cannot be written"));
  return static_cast<int>(status);
}

}  // namespace
}  // namespace lumivane

int main(int count, char** words, char** environment) {
  try {
    return lumivane::run(count, words, environment);
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "lumivane: %s\n", lumivane::printable(exception.what()).c_str());
    return static_cast<int>(lumivane::ExitStatus::Failed);
  }
}

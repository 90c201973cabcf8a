// What every command of the companion program works with, and what it answers.
//
// Threads: main only.
// Owns:    nothing; all that it refers to outlives the command.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/places/Gazetteer.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/UserFolders.h"
#include "platform/linux/Environment.h"
#include "tools/Arguments.h"
#include "tools/AttachedDisplays.h"
#include "tools/TerminalLog.h"

namespace lumivane {

enum class ExitStatus : int { Done = 0, Failed = 1, BadUsage = 2 };

struct Tool {
  const Environment& environment;
  const Clock& clock;
  Files& files;
  TerminalLog& log;
  AttachedDisplays& displays;
  UserFolders folders;
  std::ostream& out;
  std::ostream& err;
  bool onTerminal = false;  // whether standard error is one
};

struct CommandUsage {
  std::string_view help;
  std::vector<OptionRule> options;
  std::size_t fewestOperands = 0;
  std::size_t mostOperands = 0;
};

// The command line taken apart, or the status to end with: Done after the help was asked for, BadUsage after a
// mistake, which is explained on standard error.
struct CheckedArguments {
  Arguments arguments;
  std::optional<ExitStatus> end;
};
[[nodiscard]] CheckedArguments checkArguments(const Tool& tool, const std::vector<std::string>& words,
                                              const CommandUsage& usage);

ExitStatus fail(const Tool& tool, std::string_view problem);
ExitStatus badUsage(const Tool& tool, std::string_view problem);

// The display that --display names, else the one that the slideshow opens on; "unknown", with a note on standard
// error, where there is none.
[[nodiscard]] std::string displayNameFor(const Tool& tool, const Arguments& arguments);

// The names of places, countries in the user's language. LUMIVANE_PLACES in the environment names another file than
// the one that came with the program.
[[nodiscard]] Result<Gazetteer> openGazetteer(const Environment& environment);

// The commands. `words` are those after the command's own name.
ExitStatus collectCommand(const Tool& tool, const std::vector<std::string>& words);
ExitStatus albumsCommand(const Tool& tool, const std::vector<std::string>& words);
ExitStatus inspectCommand(const Tool& tool, const std::vector<std::string>& words);
ExitStatus placeCommand(const Tool& tool, const std::vector<std::string>& words);
ExitStatus settingsCommand(const Tool& tool, const std::vector<std::string>& words);
ExitStatus displaysCommand(const Tool& tool, const std::vector<std::string>& words);

}  // namespace lumivane

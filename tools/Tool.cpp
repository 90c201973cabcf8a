#include "tools/Tool.h"

#include "platform/PrintableText.h"
#include "platform/linux/ProgramFolder.h"
#include "platform/linux/UserLocale.h"
#include "settings/DisplayIdentity.h"

namespace lumivane {

ExitStatus fail(const Tool& tool, std::string_view problem) {
  tool.err << "lumivane: " << problem << '\n';
  return ExitStatus::Failed;
}

ExitStatus badUsage(const Tool& tool, std::string_view problem) {
  tool.err << "lumivane: " << problem << " (see --help)\n";
  return ExitStatus::BadUsage;
}

CheckedArguments checkArguments(const Tool& tool, const std::vector<std::string>& words,
                                const CommandUsage& usage) {
  Result<Arguments> parsed = parseArguments(words, usage.options);
  if (!parsed) return {{}, badUsage(tool, parsed.error())};
  CheckedArguments checked{std::move(parsed).value(), std::nullopt};
  const std::vector<std::string>& operands = checked.arguments.operands;
  if (checked.arguments.has("--help")) {
    tool.out << usage.help;
    checked.end = ExitStatus::Done;
  } else if (operands.size() < usage.fewestOperands) {
    checked.end = badUsage(tool, "something is missing on the command line");
  } else if (operands.size() > usage.mostOperands) {
    checked.end = badUsage(tool, "not expected: " + printable(operands[usage.mostOperands]));
  }
  return checked;
}

std::string displayNameFor(const Tool& tool, const Arguments& arguments) {
  if (const std::string* named = arguments.valueOf("--display")) return *named;
  if (std::optional<std::string> primary = tool.displays.primaryName()) return *primary;
  tool.err << "lumivane: no display server can be reached; the display's name is taken to be \""
           << kUnknownDisplayName << "\"\n";
  return kUnknownDisplayName;
}

Result<Gazetteer> openGazetteer(const Environment& environment) {
  return Gazetteer::open(placesPath(programFolder(), valueOf(environment, "LUMIVANE_PLACES")),
                         userLocale(environment, "LC_MESSAGES"));
}

}  // namespace lumivane

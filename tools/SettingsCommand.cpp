// lumivane settings
#include <algorithm>

#include "platform/PrintableText.h"
#include "settings/SettingsStore.h"
#include "tools/SettingText.h"
#include "tools/Tool.h"

namespace lumivane {
namespace {

constexpr std::string_view kHelp =
    "Usage: lumivane settings [--display NAME] [KEY [VALUE]]\n"
    "\n"
    "Without KEY, lists the settings of a display. With KEY, shows that one; with VALUE,\n"
    "stores it. A slideshow that is running takes it in when its settings are next loaded.\n"
    "\n"
    "  --display NAME  the display (see lumivane displays); else the one that the\n"
    "                  slideshow opens on\n"
    "\n"
    "Truths are true or false. SkipPatterns holds one regular expression a line.\n"
    "ImageDirectoryBookmarks is shown as folders and set by lumivane collect.\n"
    "\n"
    "Keys:\n";

std::string helpWithKeys() {
  std::string help(kHelp);
  for (const SettingRow& row : settingsTable()) {
    constexpr std::size_t kColumn = 26;
    help += "  " + std::string(row.key) + std::string(kColumn - row.key.size(), ' ') +
            std::string(row.meaning) + "\n";
  }
  return help;
}

// One line a setting; the further lines of a text stand below its first.
void list(const Tool& tool, const DisplaySettings& settings) {
  for (const SettingRow& row : settingsTable()) {
    std::string text = settingText(row, settings);
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
      text.insert(at + 1, "    ");
    }
    tool.out << row.key << " = " << text << '\n';
  }
}

ExitStatus change(const Tool& tool, SettingsDomain& domain, const SettingRow& row, const std::string& text) {
  DisplaySettings settings = loadSettings(&domain);
  if (const Result<Done> set = setFromText(row, text, settings); !set) return badUsage(tool, set.error());
  if (const auto objection = sheetObjection(row, settings))
    tool.err << "lumivane: note: " << *objection << '\n';
  saveSetting(domain, row, settings);
  return domain.synchronize() ? ExitStatus::Done : fail(tool, std::string(row.key) + " could not be stored");
}

ExitStatus run(const Tool& tool, const Arguments& arguments) {
  const std::vector<std::string>& operands = arguments.operands;
  const SettingRow* row = operands.empty() ? nullptr : findSetting(operands[0]);
  if (row == nullptr && !operands.empty())
    return badUsage(tool, "there is no setting " + printable(operands[0]));
  SettingsStore store(tool.files, tool.log, tool.folders.config);
  const std::string display = displayNameFor(tool, arguments);
  const auto domain = store.defaultsForModuleWithName(settingsDomainName(display));
  if (domain == nullptr) return fail(tool, "there is no folder for settings: HOME is not set");
  domain->registerDefaults(registeredDefaults(emptyBookmarkList()));
  if (operands.size() == 2) return change(tool, *domain, *row, operands[1]);
  const DisplaySettings settings = loadSettings(domain.get());
  if (row == nullptr) {
    list(tool, settings);
  } else {
    tool.out << settingText(*row, settings) << '\n';
  }
  return ExitStatus::Done;
}

}  // namespace

ExitStatus settingsCommand(const Tool& tool, const std::vector<std::string>& words) {
  const std::string help = helpWithKeys();
  const CheckedArguments checked = checkArguments(tool, words, {help, {{"--display", true}}, 0, 2});
  return checked.end ? *checked.end : run(tool, checked.arguments);
}

}  // namespace lumivane

#include "tools/AttachedDisplays.h"

#include <QGuiApplication>
#include <algorithm>
#include <cstdlib>

#include "platform/linux/DisplayServer.h"
#include "platform/linux/DrmDisplayRegistry.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/QtDisplays.h"
#include "settings/NamedDisplays.h"
#include "settings/UniqueDisplayNames.h"

namespace lumivane {
namespace {

constexpr const char* kPlatformVariable = "QT_QPA_PLATFORM";

bool answers(Environment environment, const char* platform) {
  environment[kPlatformVariable] = platform;
  return displayServerReachable(environment);
}

// Qt's own guess at a platform ends the program when it is wrong: with one server that answers, it is told which.
void chooseOnlyPlatform(const Environment& environment) {
  if (!valueOf(environment, kPlatformVariable).empty()) return;
  const bool x = answers(environment, "xcb");
  const bool wayland = answers(environment, "wayland");
  if (x != wayland) ::setenv(kPlatformVariable, x ? "xcb" : "wayland", 1);
}

}  // namespace

AttachedDisplays::AttachedDisplays(Environment environment, Log& log)
    : environment_(std::move(environment)), log_(log) {}
AttachedDisplays::~AttachedDisplays() = default;

bool AttachedDisplays::connect() {
  if (application_) return true;
  if (!displayServerReachable(environment_)) return false;
  chooseOnlyPlatform(environment_);
  // Qt keeps what it is given here for as long as it lives.
  static int count = 1;
  static char name[] = "lumivane";
  static char* words[] = {name, nullptr};
  application_ = std::make_unique<QGuiApplication>(count, words);
  return true;
}

std::vector<Display> AttachedDisplays::all() {
  if (!connect()) return {};
  const QtDisplays windowSystemDisplays;
  const PosixFiles files;
  const DrmDisplayRegistry registry(files, connectorsOf(windowSystemDisplays.attached()));
  std::vector<Display> displays = NamedDisplays(windowSystemDisplays, registry, log_).attached();
  std::vector<std::string> names;
  std::vector<DisplayNumber> numbers;
  for (const Display& display : displays) {
    names.push_back(display.name);
    numbers.push_back(display.number);
  }
  makeNamesUnique(names, numbers);
  for (std::size_t i = 0; i < displays.size(); ++i) displays[i].name = names[i];
  return displays;
}

std::optional<std::string> AttachedDisplays::primaryName() {
  const std::vector<Display> displays = all();
  if (displays.empty()) return std::nullopt;
  const DisplayNumber primary = displayNumberOf(QGuiApplication::primaryScreen());
  const auto found = std::ranges::find(displays, primary, &Display::number);
  return found == displays.end() ? displays.front().name : found->name;
}

}  // namespace lumivane

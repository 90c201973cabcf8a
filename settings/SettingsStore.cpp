#include "settings/SettingsStore.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "settings/DisplayFileName.h"
#include "settings/SettingsTable.h"

namespace lumivane {
namespace {

constexpr std::string_view kDomainPrefix = "de.orvik.LumivaneApp.";
constexpr std::string_view kFileSuffix = ".plist";

std::string fileNameOf(std::string_view domainName) {
  if (!domainName.starts_with(kDomainPrefix)) return fileNameToken(domainName) + std::string(kFileSuffix);
  domainName.remove_prefix(kDomainPrefix.size());
  return std::string(kDomainPrefix) + fileNameToken(domainName) + std::string(kFileSuffix);
}

template <typename Number>
Number saturated(std::int64_t value) {
  using Limits = std::numeric_limits<Number>;
  return static_cast<Number>(
      std::clamp<std::int64_t>(value, std::int64_t{Limits::min()}, std::int64_t{Limits::max()}));
}

// Reads one setting into its field.
struct ReadField {
  const SettingsDomain& domain;
  const SettingRow& row;
  DisplaySettings& settings;

  void operator()(std::int32_t DisplaySettings::*field) const {
    settings.*field = saturated<std::int32_t>(domain.integerForKey(row.key));
  }
  void operator()(std::uint32_t DisplaySettings::*field) const {
    settings.*field = saturated<std::uint32_t>(domain.integerForKey(row.key));
  }
  void operator()(float DisplaySettings::*field) const { settings.*field = domain.floatForKey(row.key); }
  void operator()(bool DisplaySettings::*field) const { settings.*field = domain.boolForKey(row.key); }
  void operator()(std::string DisplaySettings::*field) const {
    settings.*field = domain.stringForKey(row.key);
  }
  void operator()(TextLines DisplaySettings::*field) const {
    settings.*field =
        row.type == SettingType::Array ? domain.arrayForKey(row.key) : linesOf(domain.stringForKey(row.key));
  }
};

// Writes one setting from its field.
struct WriteField {
  SettingsDomain& domain;
  const SettingRow& row;
  const DisplaySettings& settings;

  void operator()(std::int32_t DisplaySettings::*field) const { domain.setInteger(row.key, settings.*field); }
  void operator()(std::uint32_t DisplaySettings::*field) const {
    domain.setInteger(row.key, settings.*field);
  }
  void operator()(float DisplaySettings::*field) const { domain.setFloat(row.key, settings.*field); }
  void operator()(bool DisplaySettings::*field) const { domain.setBool(row.key, settings.*field); }
  void operator()(std::string DisplaySettings::*field) const { domain.setString(row.key, settings.*field); }
  void operator()(TextLines DisplaySettings::*field) const {
    if (row.type == SettingType::Array) {
      domain.setArray(row.key, settings.*field);
    } else {
      domain.setString(row.key, joinedLines(settings.*field));
    }
  }
};

}  // namespace

std::string settingsDomainName(std::string_view displayName) {
  return std::string(kDomainPrefix) + std::string(displayName);
}

std::unique_ptr<SettingsDomain> SettingsStore::defaultsForModuleWithName(std::string_view name) {
  if (configFolder_.empty()) return nullptr;
  return std::make_unique<SettingsDomain>(files_, log_, configFolder_ + "/" + fileNameOf(name));
}

DisplaySettings loadSettings(const SettingsDomain* domain) {
  DisplaySettings settings;
  if (domain == nullptr) return settings;
  for (const SettingRow& row : settingsTable()) std::visit(ReadField{*domain, row, settings}, row.field);
  return settings;
}

void saveSettings(SettingsDomain& domain, const DisplaySettings& settings) {
  for (const SettingRow& row : settingsTable()) saveSetting(domain, row, settings);
}

void saveSetting(SettingsDomain& domain, const SettingRow& row, const DisplaySettings& settings) {
  std::visit(WriteField{domain, row, settings}, row.field);
}

}  // namespace lumivane

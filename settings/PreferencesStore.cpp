#include "settings/PreferencesStore.h"

#include "platform/PrintableText.h"

namespace lumivane {

DisplaySettings PreferencesStore::load(const std::string& displayName,
                                       const std::vector<std::string>& emptyBookmarks) {
  displayName_ = displayName;
  const std::string domainName = settingsDomainName(displayName);
  log_.information("Loading defaults from " + printable(domainName));
  defaults_ = store_.defaultsForModuleWithName(domainName);
  if (defaults_ == nullptr) {
    log_.error("Could not create a defaults object!!");
  } else {
    defaults_->registerDefaults(registeredDefaults(emptyBookmarks));
  }
  flush();
  return loadSettings(defaults_.get());
}

bool PreferencesStore::save(const DisplaySettings& settings) {
  if (defaults_ != nullptr) saveSettings(*defaults_, settings);
  const bool flushed = flush();
  log_.information("writing defaults (display name = " + printable(displayName_) + ")");
  return flushed;
}

bool PreferencesStore::flush() {
  const bool flushed = defaults_ != nullptr && defaults_->synchronize();
  if (!flushed) log_.error("writing defaults failed! (display name = " + printable(displayName_) + ")");
  return flushed;
}

}  // namespace lumivane

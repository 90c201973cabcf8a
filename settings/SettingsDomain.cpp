#include "settings/SettingsDomain.h"

#include <cmath>
#include <utility>

#include "platform/PrintableText.h"
#include "settings/TypedValue.h"

namespace lumivane {
namespace {

// Room for the bookmarks of ten thousand folders; far more than any sound file holds.
constexpr std::size_t kLargestFileBytes = std::size_t{16} << 20;
constexpr int kMostDamagedFilesKept = 100;

Result<PropertyListDictionary> readDictionary(const Files& files, const std::string& path) {
  const Result<std::string> bytes = files.read(path, kLargestFileBytes);
  if (!bytes) return Error{bytes.error()};
  const Result<PropertyList> list = parsePropertyList(bytes.value());
  if (!list) return Error{printable(path) + ": " + list.error()};
  const auto* dictionary = list.value().as<PropertyListDictionary>();
  if (dictionary == nullptr) return Error{printable(path) + ": not a dictionary of settings"};
  return *dictionary;
}

}  // namespace

SettingsDomain::SettingsDomain(Files& files, Log& log, std::string path)
    : files_(files), log_(log), path_(std::move(path)) {
  readFile();
}

void SettingsDomain::registerDefaults(PropertyListDictionary defaults) {
  defaults_ = std::move(defaults);
}

const PropertyList* SettingsDomain::find(std::string_view key) const {
  for (const PropertyListDictionary* values : {&changes_, &stored_}) {
    if (const auto found = values->find(key); found != values->end()) return &found->second;
  }
  return nullptr;
}

template <typename Value>
Value SettingsDomain::typed(std::string_view key, std::optional<Value> (*read)(const PropertyList&)) const {
  if (const PropertyList* stored = find(key)) {
    if (const std::optional<Value> value = read(*stored)) return *value;
  }
  const auto fallback = defaults_.find(key);
  if (fallback == defaults_.end()) return Value{};
  return read(fallback->second).value_or(Value{});
}

std::int64_t SettingsDomain::integerForKey(std::string_view key) const {
  return typed(key, &asInteger);
}
float SettingsDomain::floatForKey(std::string_view key) const {
  return typed(key, &asFloat);
}
bool SettingsDomain::boolForKey(std::string_view key) const {
  return typed(key, &asBool);
}
std::string SettingsDomain::stringForKey(std::string_view key) const {
  return typed(key, &asText);
}
std::vector<std::string> SettingsDomain::arrayForKey(std::string_view key) const {
  return typed(key, &asBlobs);
}

void SettingsDomain::set(std::string_view key, PropertyList value) {
  const auto stored = stored_.find(key);
  if (stored != stored_.end() && stored->second == value) {
    if (const auto change = changes_.find(key); change != changes_.end()) changes_.erase(change);
    return;
  }
  changes_.insert_or_assign(std::string(key), std::move(value));
}

void SettingsDomain::setInteger(std::string_view key, std::int64_t value) {
  set(key, value);
}
void SettingsDomain::setBool(std::string_view key, bool value) {
  set(key, value);
}
void SettingsDomain::setString(std::string_view key, std::string_view value) {
  set(key, std::string(value));
}

void SettingsDomain::setFloat(std::string_view key, float value) {
  if (std::isfinite(value)) set(key, static_cast<double>(value));
}

void SettingsDomain::setArray(std::string_view key, const std::vector<std::string>& blobs) {
  PropertyListArray array;
  for (const std::string& blob : blobs) array.push_back(PropertyListData{blob});
  set(key, std::move(array));
}

bool SettingsDomain::synchronize() {
  readFile();
  if (changes_.empty()) return true;
  if (damaged_ && !keepDamagedFile()) return false;
  return write();
}

void SettingsDomain::readFile() {
  damaged_ = false;
  if (files_.exists(path_)) {
    const Result<PropertyListDictionary> dictionary = readDictionary(files_, path_);
    if (dictionary) {
      stored_ = dictionary.value();
      damageReported_ = false;
      return;
    }
    damaged_ = true;
    reportDamage(dictionary.error());
  }
  // The file has gone or gone bad since it was read: what was known of it is to be written again.
  changes_.merge(stored_);
  stored_.clear();
}

void SettingsDomain::reportDamage(const std::string& reason) {
  if (!std::exchange(damageReported_, true)) log_.error("settings file cannot be used: " + reason);
}

// Each damaged file is kept, also when one was kept before.
bool SettingsDomain::keepDamagedFile() {
  // A folder that stands here, or a ring of links, is nobody's settings: it is left where it is.
  if (files_.exists(path_ + "/.")) {
    log_.error("settings not written: " + printable(path_) + ": what stands there is no file");
    return false;
  }
  std::string kept = path_ + ".damaged";
  for (int number = 2; files_.exists(kept); ++number) {
    if (number > kMostDamagedFilesKept) return false;
    kept = path_ + ".damaged-" + std::to_string(number);
  }
  const Result<Done> renamed = files_.rename(path_, kept);
  if (!renamed) {
    log_.error("damaged settings file cannot be kept: " + renamed.error());
    return false;
  }
  log_.information("damaged settings file kept as " + printable(kept));
  damaged_ = false;
  return true;
}

bool SettingsDomain::write() {
  PropertyListDictionary merged = stored_;
  for (const auto& [key, value] : changes_) merged.insert_or_assign(key, value);
  const Result<std::string> xml = writePropertyListXml(merged);
  if (!xml) {
    log_.error("settings " + printable(path_) + ": " + xml.error());
    return false;
  }
  const Result<Done> written = files_.writeAtomically(path_, xml.value());
  if (!written) {
    log_.error("settings not written: " + written.error());
    return false;
  }
  stored_ = std::move(merged);
  changes_.clear();
  return true;
}

}  // namespace lumivane

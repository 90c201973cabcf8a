// The stored settings of one display: typed reads that fall back to registered defaults, typed writes, and a flush.
//
// Threads: main only.
// Owns:    the settings as last read and the changes since; what is in the file reaches it, and changes reach the
//          file, only in synchronize().
// Format:  one property-list file; keys that nobody here knows are kept.
// Errors:  a damaged file reads as if it were empty, which is logged once with its path; the first flush of a change
//          keeps it under another name.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/PropertyList.h"

namespace lumivane {

class SettingsDomain {
 public:
  // Reads the file; one that is not there is as good as an empty one.
  SettingsDomain(Files& files, Log& log, std::string path);

  [[nodiscard]] const std::string& path() const { return path_; }

  // What reads give when nothing usable is stored. Never written to the file.
  void registerDefaults(PropertyListDictionary defaults);

  // The stored value, else the registered default, else 0, false or empty. How values of other types are read:
  // TypedValue.h.
  [[nodiscard]] std::int64_t integerForKey(std::string_view key) const;
  [[nodiscard]] float floatForKey(std::string_view key) const;
  [[nodiscard]] bool boolForKey(std::string_view key) const;
  [[nodiscard]] std::string stringForKey(std::string_view key) const;
  [[nodiscard]] std::vector<std::string> arrayForKey(std::string_view key) const;

  void setInteger(std::string_view key, std::int64_t value);
  // A number that is none (infinite, not a number) is not taken: the former value stays.
  void setFloat(std::string_view key, float value);
  void setBool(std::string_view key, bool value);
  void setString(std::string_view key, std::string_view value);
  // Byte blobs.
  void setArray(std::string_view key, const std::vector<std::string>& blobs);

  // Takes in what others have written meanwhile and writes the changes made here, if there are any. False when they
  // could not be written; they are then tried again by the next call.
  bool synchronize();

 private:
  void set(std::string_view key, PropertyList value);
  [[nodiscard]] const PropertyList* find(std::string_view key) const;
  void readFile();
  [[nodiscard]] bool write();
  [[nodiscard]] bool keepDamagedFile();
  void reportDamage(const std::string& reason);

  template <typename Value>
  [[nodiscard]] Value typed(std::string_view key, std::optional<Value> (*read)(const PropertyList&)) const;

  Files& files_;
  Log& log_;
  const std::string path_;
  PropertyListDictionary defaults_;
  PropertyListDictionary stored_;   // as in the file
  PropertyListDictionary changes_;  // not in the file yet
  bool damaged_ = false;            // what stands at the path is no settings file
  bool damageReported_ = false;
};

}  // namespace lumivane

// A property list as a value: what settings files and last-run records hold.
//
// Threads: any; pure functions over values.
// Units:   dates are wall time; the format stores whole seconds since 2001-01-01 00:00 UTC.
// Errors:  parsing hostile bytes gives an Error, never a crash; nesting deeper than 64 levels is an Error.
// Format:  read as XML or binary (told apart by their first bytes), written as XML.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Clock.h"
#include "platform/Result.h"

namespace lumivane {

class PropertyList;

using PropertyListArray = std::vector<PropertyList>;
using PropertyListDictionary = std::map<std::string, PropertyList, std::less<>>;

// Bytes, as opposed to text.
struct PropertyListData {
  std::string bytes;
  bool operator==(const PropertyListData&) const = default;
};

class PropertyList {
 public:
  using Value = std::variant<bool, std::int64_t, double, std::string, PropertyListData, WallTime,
                             PropertyListArray, PropertyListDictionary>;

  PropertyList() : value_(PropertyListDictionary{}) {}
  // A list of values reads as one.
  // NOLINTBEGIN(google-explicit-constructor)
  template <typename T>
  requires(!std::is_same_v<std::remove_cvref_t<T>, PropertyList>) PropertyList(T value)
      : value_(std::move(value)) {}
  // NOLINTEND(google-explicit-constructor)

  // The value if it is of that very type, else nullptr.
  template <typename T>
  [[nodiscard]] const T* as() const {
    return std::get_if<T>(&value_);
  }
  [[nodiscard]] const Value& value() const { return value_; }
  bool operator==(const PropertyList&) const = default;

 private:
  Value value_;
};

[[nodiscard]] Result<PropertyList> parsePropertyList(std::string_view bytes);
[[nodiscard]] Result<std::string> writePropertyListXml(const PropertyList& list);

}  // namespace lumivane

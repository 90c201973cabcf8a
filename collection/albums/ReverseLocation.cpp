#include "collection/albums/ReverseLocation.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/PropertyList.h"

namespace lumivane {
namespace {

constexpr std::size_t kLargestArchive = std::size_t{256} << 10;
constexpr std::size_t kLongestPlace = 200;
constexpr std::string_view kNothing = "$null";

const PropertyList* entry(const PropertyList* dictionary, std::string_view key) {
  const auto* entries = dictionary == nullptr ? nullptr : dictionary->as<PropertyListDictionary>();
  if (entries == nullptr) return nullptr;
  const auto found = entries->find(key);
  return found == entries->end() ? nullptr : &found->second;
}

// The objects of an archive refer to each other by their numbers.
class Archive {
 public:
  explicit Archive(const PropertyList& list) {
    const PropertyList* objects = entry(&list, "$objects");
    if (objects != nullptr) objects_ = objects->as<PropertyListArray>();
  }

  // The object that an entry refers to.
  [[nodiscard]] const PropertyList* follow(const PropertyList* dictionary, std::string_view key) const {
    const PropertyList* number = entry(entry(dictionary, key), "CF$UID");
    const auto* index = number == nullptr ? nullptr : number->as<std::int64_t>();
    if (index == nullptr || objects_ == nullptr || *index < 0) return nullptr;
    const auto at = static_cast<std::uint64_t>(*index);
    return at < objects_->size() ? &(*objects_)[at] : nullptr;
  }

 private:
  const PropertyListArray* objects_ = nullptr;
};

}  // namespace

std::vector<std::string> placesInReverseLocation(std::string_view archive) {
  std::vector<std::string> places;
  if (archive.empty() || archive.size() > kLargestArchive) return places;
  const Result<PropertyList> list = parsePropertyList(archive);
  if (!list) return places;
  const Archive objects(list.value());
  const PropertyList* root = objects.follow(entry(&list.value(), "$top"), "root");
  const PropertyList* address = objects.follow(root, "postalAddress");
  for (const char* part : {"_subLocality", "_city", "_state", "_country"}) {
    const PropertyList* value = objects.follow(address, part);
    const auto* name = value == nullptr ? nullptr : value->as<std::string>();
    if (name == nullptr || name->empty() || *name == kNothing || name->size() > kLongestPlace) continue;
    if (std::ranges::find(places, *name) == places.end()) places.push_back(*name);
  }
  return places;
}

}  // namespace lumivane

#include "collection/FileNameOrder.h"

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace lumivane {
namespace {

using CollatorRef = std::unique_ptr<UCollator, decltype(&ucol_close)>;

CollatorRef openCollator(const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  CollatorRef collator(ucol_open(locale.c_str(), &status), &ucol_close);
  if (U_SUCCESS(status)) ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
  if (U_FAILURE(status)) collator.reset();
  return collator;
}

// Makes the sort keys of paths, one after the other in one block of memory. A path's key is the keys of its names
// in a row, each ended by a zero byte, which no key holds: comparing the bytes compares name by name.
// Requires: the paths stay where they are.
class KeyWriter {
 public:
  explicit KeyWriter(const UCollator& collator) : collator_(collator) {}

  void append(std::string_view path) {
    const std::size_t begin = keys_.size();
    const std::size_t nameAt = path.rfind('/') + 1;  // 0 when there is no slash
    appendFolder(path.substr(0, nameAt));
    appendName(path.substr(nameAt));
    places_.push_back({begin, keys_.size() - begin});
  }

  [[nodiscard]] std::string_view key(std::size_t i) const {
    const auto [from, bytes] = places_[i];
    return {reinterpret_cast<const char*>(keys_.data()) + from, bytes};
  }

 private:
  struct Extent {
    std::size_t from = 0;
    std::size_t bytes = 0;
  };

  // Many pictures share a folder, whose key is made once.
  void appendFolder(std::string_view folder) {
    if (folder.empty()) return;
    const std::size_t begin = keys_.size();
    const auto known = folderKeys_.find(folder);
    if (known != folderKeys_.end()) {
      const auto [from, bytes] = known->second;
      keys_.resize(begin + bytes);
      std::memcpy(keys_.data() + begin, keys_.data() + from, bytes);
      return;
    }
    for (std::string_view rest = folder; !rest.empty();) {
      const std::size_t slash = rest.find('/');  // a folder ends with one
      appendName(rest.substr(0, slash));
      rest.remove_prefix(slash + 1);
    }
    folderKeys_.emplace(folder, Extent{begin, keys_.size() - begin});
  }

  void appendName(std::string_view name) {
    utf16_.resize(name.size());
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(utf16_.data(), static_cast<std::int32_t>(utf16_.size()), &length, name.data(),
                         static_cast<std::int32_t>(name.size()), 0xFFFD, nullptr, &status);
    const std::size_t begin = keys_.size();
    std::size_t room = name.size() * 4 + 16;
    keys_.resize(begin + room);
    std::size_t used = writeKey(length, begin, room);
    if (used > room) {
      keys_.resize(begin + used);
      used = writeKey(length, begin, used);
    }
    keys_.resize(begin + used);
  }

  // The bytes that the key needs, its zero byte included; it is there when they fit into the room.
  std::size_t writeKey(std::int32_t utf16Length, std::size_t begin, std::size_t room) {
    const std::int32_t used = ucol_getSortKey(&collator_, utf16_.data(), utf16Length, keys_.data() + begin,
                                              static_cast<std::int32_t>(room));
    return static_cast<std::size_t>(std::max(used, 0));
  }

  const UCollator& collator_;
  std::vector<std::uint8_t> keys_;
  std::vector<Extent> places_;
  std::unordered_map<std::string_view, Extent> folderKeys_;
  std::u16string utf16_;
};

// How many bytes all keys begin with in common: paths of one tree share a lot.
std::size_t commonBeginning(const KeyWriter& keys, std::size_t count) {
  std::string_view common = count == 0 ? std::string_view() : keys.key(0);
  for (std::size_t i = 1; i < count; ++i) {
    const std::string_view key = keys.key(i);
    const auto end = std::mismatch(common.begin(), common.end(), key.begin(), key.end()).first;
    common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
  }
  return common.size();
}

// A path on its way to its place. Most comparisons are settled by the first bytes in which keys differ, without a
// look at the keys themselves.
struct Placed {
  std::uint64_t head = 0;
  std::uint32_t path = 0;
};

std::uint64_t headOf(std::string_view key) {
  std::uint64_t head = 0;
  for (std::size_t i = 0; i < sizeof head; ++i) {
    head = (head << 8) | (i < key.size() ? static_cast<std::uint8_t>(key[i]) : 0U);
  }
  return head;
}

std::vector<Placed> inOrder(const KeyWriter& keys, const std::vector<std::string>& paths) {
  const std::size_t common = commonBeginning(keys, paths.size());
  std::vector<Placed> order(paths.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    order[i] = {headOf(keys.key(i).substr(common)), static_cast<std::uint32_t>(i)};
  }
  std::sort(order.begin(), order.end(), [&](const Placed& a, const Placed& b) {
    if (a.head != b.head) return a.head < b.head;
    const int difference = keys.key(a.path).substr(common).compare(keys.key(b.path).substr(common));
    return difference != 0 ? difference < 0 : paths[a.path] < paths[b.path];
  });
  return order;
}

}  // namespace

void sortByFileName(std::vector<std::string>& paths, const std::string& locale) {
  const CollatorRef collator = openCollator(locale);
  if (!collator) {
    std::sort(paths.begin(), paths.end());
    return;
  }
  KeyWriter keys(*collator);
  for (const std::string& path : paths) keys.append(path);
  std::vector<std::string> sorted;
  sorted.reserve(paths.size());
  for (const Placed& placed : inOrder(keys, paths)) sorted.push_back(std::move(paths[placed.path]));
  paths = std::move(sorted);
}

}  // namespace lumivane

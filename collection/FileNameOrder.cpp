#include "collection/FileNameOrder.h"

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
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
class KeyWriter {
 public:
  explicit KeyWriter(const UCollator& collator) : collator_(collator) {}

  void append(std::string_view path) {
    const std::size_t begin = keys_.size();
    const std::size_t nameAt = path.rfind('/') + 1;  // 0 when there is no slash
    appendFolder(path.substr(0, nameAt));
    appendName(path.substr(nameAt));
    places_.emplace_back(begin, keys_.size());
  }

  [[nodiscard]] std::string_view key(std::size_t i) const {
    const auto [begin, end] = places_[i];
    return {reinterpret_cast<const char*>(keys_.data()) + begin, end - begin};
  }

 private:
  // The paths of a walk come folder by folder: the last folder's key serves many pictures.
  void appendFolder(std::string_view folder) {
    const std::size_t begin = keys_.size();
    if (folder == lastFolder_) {
      keys_.resize(begin + (lastFolderKey_.second - lastFolderKey_.first));
      std::memcpy(keys_.data() + begin, keys_.data() + lastFolderKey_.first, keys_.size() - begin);
    } else {
      for (std::string_view rest = folder; !rest.empty();) {
        const std::size_t slash = std::min(rest.find('/'), rest.size() - 1);
        appendName(rest.substr(0, slash));
        rest.remove_prefix(slash + 1);
      }
    }
    lastFolder_ = folder;
    lastFolderKey_ = {begin, keys_.size()};
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
  std::vector<std::pair<std::size_t, std::size_t>> places_;
  std::u16string utf16_;
  std::string_view lastFolder_;
  std::pair<std::size_t, std::size_t> lastFolderKey_{0, 0};
};

// Moves the texts into the order of the indices.
void applyOrder(const std::vector<std::uint32_t>& order, std::vector<std::string>& texts) {
  std::vector<std::string> sorted;
  sorted.reserve(texts.size());
  for (const std::uint32_t i : order) sorted.push_back(std::move(texts[i]));
  texts = std::move(sorted);
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
  std::vector<std::uint32_t> order(paths.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::uint32_t>(i);
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    const int difference = keys.key(a).compare(keys.key(b));
    return difference != 0 ? difference < 0 : paths[a] < paths[b];
  });
  applyOrder(order, paths);
}

}  // namespace lumivane

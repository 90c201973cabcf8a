#include "collection/FileNameOrder.h"

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "collection/AsciiNameOrder.h"
#include "collection/PathTree.h"

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

// Makes the keys of names that are compared with each other, one after the other in one block of memory. The bytes of
// two keys compare as the names do.
class KeyWriter {
 public:
  explicit KeyWriter(const UCollator& collator)
      : collator_(collator), asciiOrder_(AsciiNameOrder::of(collator)) {}

  // Replaces all keys by those of `names`: all by the short way or all by ICU, whose keys do not compare with others.
  void write(const std::vector<std::string_view>& names) {
    if (!asciiOrder_ || !writeAll(names, [this](auto name) { return asciiOrder_->appendKey(name, keys_); })) {
      (void)writeAll(names, [this](auto name) { return appendIcuKey(name); });
    }
  }

  [[nodiscard]] std::size_t count() const { return ends_.size(); }
  [[nodiscard]] std::string_view key(std::size_t i) const {
    const std::size_t begin = i == 0 ? 0 : ends_[i - 1];
    return {reinterpret_cast<const char*>(keys_.data()) + begin, ends_[i] - begin};
  }

  // How many bytes all keys begin with in common: names of one folder share a lot.
  [[nodiscard]] std::size_t commonBeginning() const {
    std::string_view common = count() == 0 ? std::string_view() : key(0);
    for (std::size_t i = 1; i < count() && !common.empty(); ++i) {
      const std::string_view other = key(i);
      const auto end = std::mismatch(common.begin(), common.end(), other.begin(), other.end()).first;
      common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
    }
    return common.size();
  }

 private:
  template <typename Append>
  bool writeAll(const std::vector<std::string_view>& names, Append append) {
    keys_.clear();
    ends_.clear();
    for (const std::string_view name : names) {
      if (!append(name)) return false;
      ends_.push_back(keys_.size());
    }
    return true;
  }

  bool appendIcuKey(std::string_view name) {
    utf16_.resize(name.size());
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(utf16_.data(), static_cast<std::int32_t>(utf16_.size()), &length, name.data(),
                         static_cast<std::int32_t>(name.size()), 0xFFFD, nullptr, &status);
    const std::size_t begin = keys_.size();
    std::size_t room = name.size() * 4 + 16;
    keys_.resize(begin + room);
    std::size_t used = writeIcuKey(length, begin, room);
    if (used > room) {
      keys_.resize(begin + used);
      used = writeIcuKey(length, begin, used);
    }
    keys_.resize(begin + used);
    return true;
  }

  // The bytes that the key needs, its zero byte included; it is there when they fit into the room.
  std::size_t writeIcuKey(std::int32_t utf16Length, std::size_t begin, std::size_t room) {
    const std::int32_t used = ucol_getSortKey(&collator_, utf16_.data(), utf16Length, keys_.data() + begin,
                                              static_cast<std::int32_t>(room));
    return static_cast<std::size_t>(std::max(used, 0));
  }

  const UCollator& collator_;
  const std::optional<AsciiNameOrder> asciiOrder_;
  std::vector<std::uint8_t> keys_;
  std::vector<std::size_t> ends_;
  std::u16string utf16_;
};

// A file or folder on its way to its place. Most comparisons are settled by the first bytes in which keys differ,
// without a look at the keys themselves.
struct Placed {
  std::uint64_t head = 0;
  std::uint32_t sibling = 0;
};

std::uint64_t headOf(std::string_view key) {
  std::uint64_t head = 0;
  for (std::size_t i = 0; i < sizeof head; ++i) {
    head = (head << 8) | (i < key.size() ? static_cast<std::uint8_t>(key[i]) : 0U);
  }
  return head;
}

// Puts what stands in one folder into its order. Files with equal names are ordered by the bytes of their paths and come
// before folders of that name, which become one.
class SiblingOrder {
 public:
  SiblingOrder(const UCollator& collator, const std::vector<std::string>& paths)
      : keys_(collator), paths_(paths) {}

  [[nodiscard]] std::vector<OrderedSibling> operator()(const std::vector<Sibling>& siblings) {
    names_.clear();
    for (const Sibling& sibling : siblings) names_.push_back(sibling.name);
    keys_.write(names_);
    const std::size_t common = keys_.commonBeginning();
    placed_.resize(siblings.size());
    for (std::size_t i = 0; i < siblings.size(); ++i) {
      placed_[i] = {headOf(keys_.key(i).substr(common)), static_cast<std::uint32_t>(i)};
    }
    std::sort(placed_.begin(), placed_.end(), [&](const Placed& a, const Placed& b) {
      if (a.head != b.head) return a.head < b.head;
      const int difference = keys_.key(a.sibling).compare(keys_.key(b.sibling));
      if (difference != 0) return difference < 0;
      return isBefore(siblings[a.sibling], siblings[b.sibling]);
    });
    return result(siblings);
  }

 private:
  bool isBefore(const Sibling& a, const Sibling& b) const {
    if (a.isFolder || b.isFolder) return !a.isFolder && b.isFolder;
    return paths_[a.number] < paths_[b.number];
  }

  std::vector<OrderedSibling> result(const std::vector<Sibling>& siblings) const {
    std::vector<OrderedSibling> ordered;
    ordered.reserve(placed_.size());
    for (std::size_t i = 0; i < placed_.size(); ++i) {
      const Sibling& sibling = siblings[placed_[i].sibling];
      const bool isSameName = sibling.isFolder && i > 0 && siblings[placed_[i - 1].sibling].isFolder &&
                              keys_.key(placed_[i].sibling) == keys_.key(placed_[i - 1].sibling);
      ordered.push_back({sibling.number, sibling.isFolder, isSameName});
    }
    return ordered;
  }

  KeyWriter keys_;
  const std::vector<std::string>& paths_;
  std::vector<std::string_view> names_;
  std::vector<Placed> placed_;
};

}  // namespace

void sortByFileName(std::vector<std::string>& paths, const std::string& locale) {
  const CollatorRef collator = openCollator(locale);
  if (!collator) {
    std::sort(paths.begin(), paths.end());
    return;
  }
  SiblingOrder order(*collator, paths);
  std::vector<std::string> sorted;
  sorted.reserve(paths.size());
  for (const std::uint32_t path : PathTree(paths).tour(std::ref(order))) {
    sorted.push_back(std::move(paths[path]));
  }
  paths = std::move(sorted);
}

}  // namespace lumivane

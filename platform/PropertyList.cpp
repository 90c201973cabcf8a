#include "platform/PropertyList.h"

#include <locale.h>
#include <plist/plist.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>

#include "platform/PrintableText.h"
#include "platform/PropertyListGuard.h"

namespace lumivane {
namespace {

constexpr std::chrono::seconds kFormatEpoch{978307200};  // 2001-01-01 00:00 UTC
constexpr const char* kUidKey = "CF$UID";                // how the XML form writes a number of type UID

struct FreeNode {
  void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, FreeNode>;

struct FreeMalloc {
  void operator()(void* memory) const { std::free(memory); }
};
using CText = std::unique_ptr<char, FreeMalloc>;

// The library reads and writes decimal numbers by the thread's locale, which on many desktops has a decimal comma.
class PlainNumbers {
 public:
  PlainNumbers() : plain_(newlocale(LC_ALL_MASK, "C", nullptr)) {
    if (plain_ != nullptr) former_ = uselocale(plain_);
  }
  ~PlainNumbers() {
    if (plain_ == nullptr) return;
    uselocale(former_);
    freelocale(plain_);
  }
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

 private:
  locale_t plain_;
  locale_t former_ = nullptr;
};

CText xmlOf(plist_t node, std::uint32_t& length) {
  char* xml = nullptr;
  plist_to_xml(node, &xml, &length);
  return CText(xml);
}

// The library has one 64-bit integer for both signs and tells them apart only when it writes.
std::int64_t integerOf(plist_t node) {
  std::uint64_t value = 0;
  plist_get_uint_val(node, &value);
  constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();
  if (value <= static_cast<std::uint64_t>(kLargest)) return static_cast<std::int64_t>(value);
  std::uint32_t length = 0;
  const CText xml = xmlOf(node, length);
  const bool negative =
      xml && std::string_view(xml.get(), length).find("<integer>-") != std::string_view::npos;
  return negative ? static_cast<std::int64_t>(value) : kLargest;
}

PropertyListData dataOf(plist_t node) {
  char* bytes = nullptr;
  std::uint64_t length = 0;
  plist_get_data_val(node, &bytes, &length);
  const CText owned(bytes);
  return {bytes == nullptr ? std::string() : std::string(bytes, length)};
}

// XML 1.0 has no way to write most control characters.
bool isWritable(std::string_view text) {
  const bool control = std::ranges::any_of(text, [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  });
  return !control && isValidUtf8(text);
}

// Nothing for a date that the library cannot tell: one before 1933 or after 2069.
std::optional<WallTime> dateOf(plist_t node) {
  std::int32_t seconds = 0;
  std::int32_t microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  if (seconds == std::numeric_limits<std::int32_t>::min()) return std::nullopt;
  return WallTime(std::chrono::seconds(seconds) + kFormatEpoch);
}

// Turns the library's nodes into values, and remembers whether all of them could be written again: what could not would
// stand in the way of everything that is to be written later.
class NodeReader {
 public:
  [[nodiscard]] bool sound() const { return sound_; }

  PropertyList read(plist_t node) {
    std::uint8_t truth = 0;
    double real = 0;
    std::uint64_t number = 0;
    switch (plist_get_node_type(node)) {
      case PLIST_BOOLEAN:
        plist_get_bool_val(node, &truth);
        return truth != 0;
      case PLIST_UINT:
        return integerOf(node);
      case PLIST_REAL:
        plist_get_real_val(node, &real);
        return real;
      case PLIST_STRING:
        return textOf(node);
      case PLIST_DATA:
        return dataOf(node);
      case PLIST_DATE:
        return checkedDate(node);
      case PLIST_ARRAY:
        return arrayOf(node);
      case PLIST_DICT:
        return dictionaryOf(node);
      case PLIST_UID:
        plist_get_uid_val(node, &number);
        return PropertyListDictionary{{kUidKey, static_cast<std::int64_t>(number)}};
      default:
        sound_ = false;
        return false;
    }
  }

 private:
  WallTime checkedDate(plist_t node) {
    const std::optional<WallTime> date = dateOf(node);
    if (!date) sound_ = false;
    return date.value_or(WallTime{});
  }

  std::string checkedText(char* text) {
    const CText owned(text);
    if (text == nullptr) return {};
    std::string copy(text);
    if (!isWritable(copy)) sound_ = false;
    return copy;
  }

  std::string textOf(plist_t node) {
    char* text = nullptr;
    plist_get_string_val(node, &text);
    return checkedText(text);
  }

  PropertyListArray arrayOf(plist_t node) {
    PropertyListArray array;
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    const CText owned(static_cast<char*>(iterator));
    for (std::uint32_t left = plist_array_get_size(node); left > 0; --left) {
      plist_t item = nullptr;
      plist_array_next_item(node, iterator, &item);
      array.push_back(read(item));
    }
    return array;
  }

  PropertyListDictionary dictionaryOf(plist_t node) {
    PropertyListDictionary dictionary;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const CText owned(static_cast<char*>(iterator));
    for (std::uint32_t left = plist_dict_get_size(node); left > 0; --left) {
      char* key = nullptr;
      plist_t item = nullptr;
      plist_dict_next_item(node, iterator, &key, &item);
      std::string name = checkedText(key);
      dictionary.insert_or_assign(std::move(name), read(item));
    }
    return dictionary;
  }

  bool sound_ = true;
};

// Turns values into the library's nodes; stays empty-handed with a reason when one cannot be written.
class NodeMaker {
 public:
  [[nodiscard]] const std::string& problem() const { return problem_; }

  Node make(const PropertyList& list, std::size_t depth) {
    return std::visit([&](const auto& value) { return node(value, depth); }, list.value());
  }

 private:
  Node fail(const char* problem) {
    if (problem_.empty()) problem_ = problem;
    return nullptr;
  }

  Node node(bool value, std::size_t) { return Node(plist_new_bool(value ? 1 : 0)); }
  Node node(std::int64_t value, std::size_t) {
    return Node(plist_new_uint(static_cast<std::uint64_t>(value)));
  }
  Node node(double value, std::size_t) { return Node(plist_new_real(value)); }

  Node node(const std::string& value, std::size_t) {
    if (!isWritable(value)) return fail("a text is not valid UTF-8 or holds a control character");
    return Node(plist_new_string(value.c_str()));
  }

  Node node(const PropertyListData& value, std::size_t) {
    return Node(plist_new_data(value.bytes.data(), value.bytes.size()));
  }

  Node node(WallTime value, std::size_t) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(value.time_since_epoch()) - kFormatEpoch;
    constexpr std::int64_t kReach = std::numeric_limits<std::int32_t>::max();
    if (seconds.count() < -kReach || seconds.count() > kReach) return fail("a date is too far away");
    return Node(plist_new_date(static_cast<std::int32_t>(seconds.count()), 0));
  }

  Node node(const PropertyListArray& value, std::size_t depth) {
    if (depth >= kDeepestPropertyListNesting) return fail("it is nested too deeply");
    Node array(plist_new_array());
    for (const PropertyList& item : value) {
      Node made = make(item, depth + 1);
      if (!made) return nullptr;
      plist_array_append_item(array.get(), made.release());
    }
    return array;
  }

  Node node(const PropertyListDictionary& value, std::size_t depth) {
    if (depth >= kDeepestPropertyListNesting) return fail("it is nested too deeply");
    Node dictionary(plist_new_dict());
    for (const auto& [key, item] : value) {
      if (!isWritable(key)) return fail("a key is not valid UTF-8 or holds a control character");
      Node made = make(item, depth + 1);
      if (!made) return nullptr;
      plist_dict_set_item(dictionary.get(), key.c_str(), made.release());
    }
    return dictionary;
  }

  std::string problem_;
};

Result<Done> guard(std::string_view bytes) {
  if (bytes.empty()) return Error{"it is empty"};
  if (bytes.size() > kLargestPropertyListBytes) return Error{"it is too large"};
  if (isBinaryPropertyList(bytes)) return guardBinaryPropertyList(bytes);
  if (!isValidUtf8(bytes)) return Error{"it is not valid UTF-8"};
  return guardXmlPropertyList(bytes);
}

}  // namespace

Result<PropertyList> parsePropertyList(std::string_view bytes) {
  if (const Result<Done> sound = guard(bytes); !sound) return Error{"not a property list: " + sound.error()};
  const PlainNumbers plainNumbers;
  plist_t parsed = nullptr;
  plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
  const Node root(parsed);
  if (!root) return Error{"not a property list: it cannot be parsed"};
  NodeReader reader;
  PropertyList list = reader.read(root.get());
  if (!reader.sound()) return Error{"not a property list: it holds values that cannot be kept"};
  return list;
}

Result<std::string> writePropertyListXml(const PropertyList& list) {
  const PlainNumbers plainNumbers;
  NodeMaker maker;
  const Node root = maker.make(list, 0);
  if (!root) return Error{"cannot be written as a property list: " + maker.problem()};
  std::uint32_t length = 0;
  const CText xml = xmlOf(root.get(), length);
  if (!xml) return Error{"cannot be written as a property list"};
  return std::string(xml.get(), length);
}

}  // namespace lumivane

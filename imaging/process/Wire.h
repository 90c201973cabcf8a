// Numbers and texts as bytes between two processes of one machine.
//
// Threads: a value.
// Errors:  a reader that was asked for more than there is, or for what is not there, hands out zeros and says so in
//          the end: ok() is for the whole of what was read.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace lumivane {

class WireWriter {
 public:
  template <typename Number>
  void number(Number value) {
    static_assert(std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>);
    append(&value, sizeof value);
  }
  void flag(bool value) { number(static_cast<std::uint8_t>(value ? 1 : 0)); }
  void text(std::string_view value) {
    number(static_cast<std::uint32_t>(value.size()));
    append(value.data(), value.size());
  }
  [[nodiscard]] std::size_t size() const { return bytes_.size(); }
  [[nodiscard]] std::vector<std::byte> take() { return std::move(bytes_); }

 private:
  void append(const void* data, std::size_t count) {
    const std::size_t before = bytes_.size();
    bytes_.resize(before + count);
    if (count > 0) std::memcpy(bytes_.data() + before, data, count);
  }

  std::vector<std::byte> bytes_;
};

class WireReader {
 public:
  explicit WireReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  template <typename Number>
  [[nodiscard]] Number number() {
    static_assert(std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>);
    Number value{};
    const auto taken = take(sizeof value);
    if (!taken.empty()) std::memcpy(&value, taken.data(), sizeof value);
    return value;
  }
  // A flag is 0 or 1 and nothing else.
  [[nodiscard]] bool flag() {
    const auto value = number<std::uint8_t>();
    if (value > 1) fail();
    return value == 1;
  }
  [[nodiscard]] std::string text(std::size_t longest) {
    const auto length = number<std::uint32_t>();
    if (length > longest) {
      fail();
      return {};
    }
    const auto taken = take(length);
    return {reinterpret_cast<const char*>(taken.data()), taken.size()};
  }

  void fail() {
    ok_ = false;
    bytes_ = {};
  }
  [[nodiscard]] bool ok() const { return ok_; }
  // Nothing failed, and nothing is left over.
  [[nodiscard]] bool complete() const { return ok_ && bytes_.empty(); }

 private:
  std::span<const std::byte> take(std::size_t count) {
    if (count > bytes_.size()) {
      fail();
      return {};
    }
    const auto taken = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    return taken;
  }

  std::span<const std::byte> bytes_;
  bool ok_ = true;
};

}  // namespace lumivane

#include "settings/TypedValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace lumivane {
namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

template <typename Number>
std::optional<Number> parsedWhole(std::string_view text) {
  text = trimmed(text);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<std::int64_t> saturated(double value) {
  using Limits = std::numeric_limits<std::int64_t>;
  if (!std::isfinite(value)) return std::nullopt;
  constexpr double kBeyond = 9223372036854775808.0;  // 2^63: the first double above the range
  if (value >= kBeyond) return Limits::max();
  if (value < -kBeyond) return Limits::min();
  return static_cast<std::int64_t>(value);
}

// The number that the value holds in some way, as a double.
std::optional<double> asDouble(const PropertyList& value) {
  if (const bool* truth = value.as<bool>()) return *truth ? 1.0 : 0.0;
  if (const auto* integer = value.as<std::int64_t>()) return static_cast<double>(*integer);
  if (const double* real = value.as<double>())
    return std::isfinite(*real) ? std::optional(*real) : std::nullopt;
  if (const auto* text = value.as<std::string>()) return numberOfText(*text);
  return std::nullopt;
}

}  // namespace

std::optional<double> numberOfText(std::string_view text) {
  const std::optional<double> number = parsedWhole<double>(text);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<std::int64_t> asInteger(const PropertyList& value) {
  // Not by way of a double where there is no need: it would lose the last digits of long numbers.
  if (const auto* integer = value.as<std::int64_t>()) return *integer;
  if (const auto* text = value.as<std::string>()) {
    if (const auto whole = parsedWhole<std::int64_t>(*text)) return whole;
  }
  const std::optional<double> number = asDouble(value);
  return number ? saturated(*number) : std::nullopt;
}

std::optional<float> asFloat(const PropertyList& value) {
  const std::optional<double> number = asDouble(value);
  if (!number) return std::nullopt;
  constexpr double kLargest = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(*number, -kLargest, kLargest));
}

std::optional<bool> asBool(const PropertyList& value) {
  const std::optional<double> number = asDouble(value);
  return number ? std::optional(*number != 0.0) : std::nullopt;
}

std::optional<std::string> asText(const PropertyList& value) {
  const auto* text = value.as<std::string>();
  return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::optional<std::vector<std::string>> asBlobs(const PropertyList& value) {
  const auto* array = value.as<PropertyListArray>();
  if (array == nullptr) return std::nullopt;
  std::vector<std::string> blobs;
  for (const PropertyList& item : *array) {
    const auto* data = item.as<PropertyListData>();
    if (data == nullptr) return std::nullopt;
    blobs.push_back(data->bytes);
  }
  return blobs;
}

}  // namespace lumivane

#include "tests/support/WrittenPlaces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <span>

namespace lumivane {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr std::size_t kHeaderBytes = 32;

struct Point {
  std::array<std::int32_t, 3> at{};
  WrittenPlace place;
};

Point pointOf(const WrittenPlace& place) {
  const double up = place.latitude * kPi / 180;
  const double around = place.longitude * kPi / 180;
  const auto whole = [](double c) { return static_cast<std::int32_t>(std::lround(c * (1 << 30))); };
  return {
      {whole(std::cos(up) * std::cos(around)), whole(std::cos(up) * std::sin(around)), whole(std::sin(up))},
      place};
}

void putInTreeOrder(std::span<Point> points, std::size_t axis) {
  if (points.size() < 2) return;
  std::ranges::stable_sort(points, {}, [axis](const Point& point) { return point.at[axis]; });
  const std::size_t middle = points.size() / 2;
  putInTreeOrder(points.first(middle), (axis + 1) % 3);
  putInTreeOrder(points.subspan(middle + 1), (axis + 1) % 3);
}

std::string number(std::uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

// Bit by bit, as the definition of CRC-32 has it.
std::uint32_t checksum(const std::string& content, std::size_t size) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (std::size_t i = 0; i < size; ++i) {
    crc ^= static_cast<unsigned char>(content[i]);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
  }
  return ~crc;
}

}  // namespace

std::string writtenPlaces(std::vector<WrittenPlace> places) {
  std::vector<Point> points;
  std::map<std::string, std::uint32_t> countries;
  for (const WrittenPlace& place : places) {
    points.push_back(pointOf(place));
    countries.emplace(place.countryCode, countries.size());
  }
  putInTreeOrder(points, 0);
  std::string names;
  std::string records;
  for (const Point& point : points) {
    for (const std::int32_t coordinate : point.at) records += number(static_cast<std::uint32_t>(coordinate));
    records += number(countries.at(point.place.countryCode) << 24 | static_cast<std::uint32_t>(names.size()));
    names += static_cast<char>(point.place.name.size()) + point.place.name;
  }
  std::string codes(2 * countries.size(), ' ');
  for (const auto& [code, index] : countries) codes.replace(2 * index, 2, code);
  const std::string body = records + codes + names;
  const auto count = [](std::size_t of) { return number(static_cast<std::uint32_t>(of)); };
  return withRightChecksum("LVPLACES" + number(1) + count(points.size()) + count(countries.size()) +
                           count(names.size()) + count(kHeaderBytes + body.size() + 4) + number(0) + body +
                           number(0));
}

std::string withNumberAt(std::string content, std::size_t offset, std::uint32_t value) {
  return withRightChecksum(content.replace(offset, 4, number(value)));
}

std::string withRightChecksum(std::string content) {
  const std::size_t size = content.size() - 4;
  return content.replace(size, 4, number(checksum(content, size)));
}

}  // namespace lumivane

#include "imaging/places/PlacesFile.h"

#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <span>

#include "imaging/places/PlacesFormat.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

using namespace places_format;

constexpr double kEarthRadiusKm =
    6371.0088;  // the mean radius of the International Union of Geodesy and Geophysics
constexpr std::size_t kMostNameBytes = std::size_t{1} << kNameBits;
constexpr std::size_t kLargestFile = kHeaderBytes + kPlaceBytes * kMostPlaces +
                                     kCountryBytes * kMostCountries + kMostNameBytes + kChecksumBytes;

// Requires: four bytes from `at` on.
std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t at) {
  const auto byte = [&](std::size_t i) { return std::to_integer<std::uint32_t>(bytes[at + i]); };
  return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

std::uint32_t checksumOf(std::span<const std::byte> bytes) {
  return static_cast<std::uint32_t>(
      ::crc32_z(::crc32_z(0, nullptr, 0), reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

bool isCountryCode(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool isBetween(std::uint32_t number, std::size_t least, std::size_t most) {
  return number >= least && number <= most;
}

}  // namespace

GlobePoint globePoint(double latitude, double longitude) {
  const double up = latitude * std::numbers::pi / 180;
  const double around = longitude * std::numbers::pi / 180;
  return {std::cos(up) * std::cos(around), std::cos(up) * std::sin(around), std::sin(up)};
}

Result<PlacesFile> PlacesFile::open(const std::string& path) {
  Result<MappedFile> mapped = MappedFile::open(path, kLargestFile);
  if (!mapped) return Error{mapped.error()};
  PlacesFile file(std::move(mapped).value());
  if (const auto problem = file.problem()) return Error{printable(path) + ": " + std::string(*problem)};
  return file;
}

// Takes in the counts, and looks at everything that a look-up relies on.
std::optional<std::string_view> PlacesFile::problem() {
  const std::span<const std::byte> bytes = file_.bytes();
  if (bytes.size() < kHeaderBytes || text(0, kMagic.size()) != kMagic) return "not a file of places";
  if (numberAt(bytes, kVersionAt) != kVersion) return "a file of places of another version";
  count_ = numberAt(bytes, kPlaceCountAt);
  countryCount_ = numberAt(bytes, kCountryCountAt);
  nameBytes_ = numberAt(bytes, kNameBytesAt);
  if (!isBetween(count_, 1, kMostPlaces) || !isBetween(countryCount_, 1, kMostCountries) ||
      !isBetween(nameBytes_, 2, kMostNameBytes)) {
    return "a file of places with impossible counts";
  }
  countriesAt_ = kHeaderBytes + kPlaceBytes * count_;
  namesAt_ = countriesAt_ + kCountryBytes * countryCount_;
  const std::size_t size = namesAt_ + nameBytes_ + kChecksumBytes;
  if (bytes.size() != size || numberAt(bytes, kFileSizeAt) != size) return "a file of places that is cut off";
  if (checksumOf(bytes.first(size - kChecksumBytes)) != numberAt(bytes, size - kChecksumBytes) ||
      !placesAreSound()) {
    return "a file of places that is damaged";
  }
  return std::nullopt;
}

bool PlacesFile::placesAreSound() const {
  for (std::uint32_t country = 0; country < countryCount_; ++country) {
    if (!isCountryCode(countryCode(country))) return false;
  }
  for (std::uint32_t place = 0; place < count_; ++place) {
    const std::uint32_t both = packed(place);
    const std::uint32_t offset = both % kMostNameBytes;
    if (both >> kNameBits >= countryCount_ || offset >= nameBytes_) return false;
    const auto length = std::to_integer<std::size_t>(file_.bytes()[namesAt_ + offset]);
    if (length == 0 || length >= nameBytes_ - offset || !isValidUtf8(name(offset))) return false;
  }
  return true;
}

std::string_view PlacesFile::text(std::size_t at, std::size_t length) const {
  return {reinterpret_cast<const char*>(file_.bytes().subspan(at, length).data()), length};
}

std::uint32_t PlacesFile::packed(std::uint32_t place) const {
  return numberAt(file_.bytes(), kHeaderBytes + kPlaceBytes * place + kPackedAt);
}

std::string_view PlacesFile::countryCode(std::uint32_t number) const {
  return text(countriesAt_ + kCountryBytes * number, kCountryBytes);
}

std::string_view PlacesFile::name(std::uint32_t offset) const {
  const std::size_t at = namesAt_ + offset;
  return text(at + 1, std::to_integer<std::size_t>(file_.bytes()[at]));
}

NearPlace PlacesFile::nearestTo(double latitude, double longitude) const {
  Candidate best{std::numeric_limits<double>::infinity()};
  search(globePoint(latitude, longitude), {0, count_, 0}, best);
  const std::uint32_t both = packed(best.place);
  const double halfChord = std::min(1.0, std::sqrt(best.squaredChord) / 2);
  return {name(both % kMostNameBytes), countryCode(both >> kNameBits),
          2 * kEarthRadiusKm * std::asin(halfChord)};
}

// The nearer side first; the other only if the plane between them is nearer than the best place so far.
void PlacesFile::search(const GlobePoint& point, Range range, Candidate& best) const {
  if (range.low >= range.high) return;
  const std::uint32_t middle = range.low + (range.high - range.low) / 2;
  const std::size_t at = kHeaderBytes + kPlaceBytes * middle;
  GlobePoint away{};
  for (std::size_t i = 0; i < away.size(); ++i) {
    const auto coordinate = static_cast<std::int32_t>(numberAt(file_.bytes(), at + 4 * i));
    away[i] = point[i] - coordinate / kUnit;
  }
  const double squared = away[0] * away[0] + away[1] * away[1] + away[2] * away[2];
  if (squared < best.squaredChord) best = {squared, middle};
  const double aside = away[range.axis];
  const std::uint32_t next = (range.axis + 1) % 3;
  const Range below{range.low, middle, next};
  const Range above{middle + 1, range.high, next};
  search(point, aside < 0 ? below : above, best);
  if (aside * aside < best.squaredChord) search(point, aside < 0 ? above : below, best);
}

}  // namespace lumivane

#include "imaging/process/PropertyWire.h"

#include <cmath>
#include <optional>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

using Texts = std::vector<std::string>;

constexpr double kMostLatitude = 90;    // degrees
constexpr double kMostLongitude = 180;  // degrees

class Writing {
 public:
  explicit Writing(WireWriter& writer) : writer_(writer), start_(writer.size()) {}

  template <typename Value, typename Write>
  void maybe(const std::optional<Value>& value, Write write) {
    writer_.flag(value.has_value());
    if (value) write(*value);
  }
  template <typename Number>
  void number(const std::optional<Number>& value) {
    maybe(value, [this](Number present) { writer_.number(present); });
  }
  void text(const std::optional<std::string>& value) {
    maybe(value, [this](const std::string& present) { writer_.text(present); });
  }
  void texts(const std::optional<Texts>& value) {
    maybe(value, [this](const Texts& present) { writeList(present); });
  }

 private:
  // As many of them as there is room for.
  void writeList(const Texts& texts) {
    std::size_t count = 0;
    std::size_t bytes = writer_.size() - start_;
    for (const std::string& text : texts) {
      bytes += text.size() + sizeof(std::uint32_t);
      if (count == kMostPropertyItems || bytes > kMostPropertyBytes) break;
      ++count;
    }
    writer_.number(static_cast<std::uint32_t>(count));
    for (std::size_t i = 0; i < count; ++i) writer_.text(texts[i]);
  }

  WireWriter& writer_;
  const std::size_t start_;
};

class Reading {
 public:
  explicit Reading(WireReader& reader) : reader_(reader) {}

  template <typename Read>
  auto maybe(Read read) -> std::optional<decltype(read())> {
    if (!reader_.flag() || !reader_.ok()) return std::nullopt;
    return read();
  }
  std::optional<std::int32_t> count() {  // never negative
    return maybe([this] {
      const auto value = reader_.number<std::int32_t>();
      if (value < 0) reader_.fail();
      return value;
    });
  }
  std::optional<double> degrees(double most) {
    return maybe([this, most] {
      const auto value = reader_.number<double>();
      if (!std::isfinite(value) || std::abs(value) > most) reader_.fail();
      return value;
    });
  }
  std::optional<std::string> text() {
    return maybe([this] { return plainText(); });
  }
  std::optional<Texts> texts() {
    return maybe([this] {
      const auto count = reader_.number<std::uint32_t>();
      if (count > kMostPropertyItems) reader_.fail();
      Texts list;
      for (std::uint32_t i = 0; i < count && reader_.ok(); ++i) list.push_back(plainText());
      return list;
    });
  }

 private:
  std::string plainText() {
    std::string text = reader_.text(kLongestPropertyText);
    if (!isValidUtf8(text)) reader_.fail();
    return text;
  }

  WireReader& reader_;
};

void writeGps(WireWriter& writer, const GpsDictionary& gps) {
  Writing out(writer);
  out.number(gps.latitude);
  out.number(gps.longitude);
  out.text(gps.latitudeRef);
  out.text(gps.longitudeRef);
}

GpsDictionary readGps(Reading& in) {
  GpsDictionary gps;
  gps.latitude = in.degrees(kMostLatitude);
  gps.longitude = in.degrees(kMostLongitude);
  gps.latitudeRef = in.text();
  gps.longitudeRef = in.text();
  return gps;
}

void writeIptc(Writing& out, const IptcDictionary& iptc) {
  out.text(iptc.captionAbstract);
  out.text(iptc.artworkContentDescription);
  out.text(iptc.objectName);
  out.texts(iptc.keywords);
  out.texts(iptc.personInImage);
}

IptcDictionary readIptc(Reading& in) {
  IptcDictionary iptc;
  iptc.captionAbstract = in.text();
  iptc.artworkContentDescription = in.text();
  iptc.objectName = in.text();
  iptc.keywords = in.texts();
  iptc.personInImage = in.texts();
  return iptc;
}

}  // namespace

// The lists come last: what they may hold is what the others leave.
void writeProperties(WireWriter& writer, const PropertyDictionary& properties) {
  Writing out(writer);
  out.number(properties.pixelWidth);
  out.number(properties.pixelHeight);
  out.number(properties.orientation);
  out.maybe(properties.gps, [&writer](const GpsDictionary& gps) { writeGps(writer, gps); });
  out.text(properties.tiffImageDescription);
  out.text(properties.exifDateTimeOriginal);
  out.maybe(properties.iptc, [&out](const IptcDictionary& iptc) { writeIptc(out, iptc); });
}

PropertyDictionary readProperties(WireReader& reader) {
  Reading in(reader);
  PropertyDictionary properties;
  properties.pixelWidth = in.count();
  properties.pixelHeight = in.count();
  properties.orientation = in.count();
  properties.gps = in.maybe([&in] { return readGps(in); });
  properties.tiffImageDescription = in.text();
  properties.exifDateTimeOriginal = in.text();
  properties.iptc = in.maybe([&in] { return readIptc(in); });
  return properties;
}

}  // namespace lumivane

// lumivane place
#include <charconv>
#include <nlohmann/json.hpp>
#include <system_error>

#include "imaging/InformationText.h"
#include "platform/PrintableText.h"
#include "tools/Tool.h"

namespace lumivane {
namespace {

constexpr std::string_view kHelp =
    "Usage: lumivane place [--json] LATITUDE LONGITUDE\n"
    "\n"
    "Names the place at a position, as the show's line of information does: the nearest\n"
    "town up to 30 km away and its country, or the country alone up to 150 km. Degrees,\n"
    "north and east positive. Nothing is asked of any network.\n"
    "\n"
    "  --json  one JSON object\n";

std::optional<double> degreesIn(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double degrees = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), degrees);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return degrees;
}

std::string jsonObject(double latitude, double longitude, const Placemark& place) {
  using Json = nlohmann::ordered_json;
  const auto orNull = [](const std::optional<std::string>& text) { return text ? Json(*text) : Json(); };
  Json object;
  object["latitude"] = latitude;
  object["longitude"] = longitude;
  object["place"] = placeName(place);
  object["locality"] = orNull(place.locality);
  object["country"] = orNull(place.country);
  return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

ExitStatus placeCommand(const Tool& tool, const std::vector<std::string>& words) {
  const CheckedArguments checked = checkArguments(tool, words, {kHelp, {{"--json", false}}, 2, 2});
  if (checked.end) return *checked.end;
  const std::vector<std::string>& operands = checked.arguments.operands;
  for (const std::string& operand : operands) {
    if (!degreesIn(operand)) return badUsage(tool, "not a number of degrees: " + printable(operand));
  }
  const double latitude = *degreesIn(operands[0]);
  const double longitude = *degreesIn(operands[1]);
  const Result<Gazetteer> gazetteer = openGazetteer(tool.environment);
  if (!gazetteer) return fail(tool, gazetteer.error());
  const Result<Placemark> place = gazetteer.value().placeAt(latitude, longitude);
  if (!place) return fail(tool, place.error());
  const bool json = checked.arguments.has("--json");
  tool.out << (json ? jsonObject(latitude, longitude, place.value()) : printable(placeName(place.value())))
           << '\n';
  return ExitStatus::Done;
}

}  // namespace lumivane

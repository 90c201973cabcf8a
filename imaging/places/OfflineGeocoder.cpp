#include "imaging/places/OfflineGeocoder.h"

namespace lumivane {
namespace {

Result<std::vector<Placemark>> asList(const Result<Placemark>& place) {
  if (!place) return Error{place.error()};
  return std::vector{place.value()};
}

}  // namespace

Result<std::unique_ptr<OfflineGeocoder>> OfflineGeocoder::open(const std::string& path,
                                                               std::string_view locale, MainLoop& mainLoop) {
  Result<Gazetteer> gazetteer = Gazetteer::open(path, locale);
  if (!gazetteer) return Error{gazetteer.error()};
  return std::make_unique<OfflineGeocoder>(std::move(gazetteer).value(), mainLoop);
}

void OfflineGeocoder::reverseGeocodeLocation(double latitude, double longitude, Completion completion) {
  mainLoop_.post([answer = asList(gazetteer_.placeAt(latitude, longitude)),
                  completion = std::move(completion)] { completion(answer); });
}

}  // namespace lumivane

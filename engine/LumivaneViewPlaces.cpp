// Where a picture was taken: its coordinates at once, the name of the place as soon as the geocoder answers.
#include "engine/LumivaneView.h"
#include "imaging/InformationText.h"

namespace lumivane {

void LumivaneView::requestPlace(double latitude, double longitude) {
  if (host_.geocoder == nullptr) return;
  host_.geocoder->reverseGeocodeLocation(
      latitude, longitude,
      [alive = std::weak_ptr(alive_), this](const Result<std::vector<Placemark>>& answer) {
        if (!alive.expired()) displayNewLocation(answer);
      });
}

// An answer is not matched with the picture that asked: it names the place of whatever is shown now.
void LumivaneView::displayNewLocation(const Result<std::vector<Placemark>>& answer) {
  if (!answer) {
    logMessage("Geocoder error: " + answer.error() + "!", true);
    return;
  }
  if (answer.value().empty()) return;
  img_place_ = placeName(answer.value().front());
  displayMessage(errmesg_, informationLine(img_description_, img_place_, img_date_));
}

}  // namespace lumivane

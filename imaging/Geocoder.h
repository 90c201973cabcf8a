// Names the place at a position on the globe: the town and the country, or the country alone.
//
// Threads: main only; the answer comes on the main loop, after the call has returned.
// Owns:    nothing of the asker's; the answer may come after the asker is gone.
// Units:   degrees, north and east positive.
// Errors:  the answer is an Error with the reason: no place near, not a position on the globe.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Result.h"

namespace lumivane {

struct Placemark {
  std::optional<std::string> locality;  // the town
  std::optional<std::string> country;   // in the user's language
  bool operator==(const Placemark&) const = default;
};

class Geocoder {
 public:
  using Completion = std::function<void(const Result<std::vector<Placemark>>&)>;

  virtual ~Geocoder() = default;

  // The best match comes first in the answer.
  virtual void reverseGeocodeLocation(double latitude, double longitude, Completion completion) = 0;
};

}  // namespace lumivane

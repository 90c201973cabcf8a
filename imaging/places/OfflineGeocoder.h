// The geocoder that asks nobody: answers out of the file of places.
//
// Threads: main only.
// Owns:    the opened file.
// Units:   degrees, north and east positive.
// Errors:  making one fails as Gazetteer::open does; answers fail as Gazetteer::placeAt does.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "imaging/Geocoder.h"
#include "imaging/places/Gazetteer.h"
#include "platform/MainLoop.h"

namespace lumivane {

class OfflineGeocoder final : public Geocoder {
 public:
  // The main loop must outlive the geocoder; answers that are due may outlive it.
  OfflineGeocoder(Gazetteer gazetteer, MainLoop& mainLoop)
      : gazetteer_(std::move(gazetteer)), mainLoop_(mainLoop) {}

  static Result<std::unique_ptr<OfflineGeocoder>> open(const std::string& path, std::string_view locale,
                                                       MainLoop& mainLoop);

  // One placemark, or an error.
  void reverseGeocodeLocation(double latitude, double longitude, Completion completion) override;

 private:
  const Gazetteer gazetteer_;
  MainLoop& mainLoop_;
};

}  // namespace lumivane

// What the log says about the user's permission to read the photo library.
//
// Threads: any; pure.
// Errors:  an unknown status is said to be unknown.
#pragma once

#include <string_view>

#include "engine/Host.h"

namespace lumivane {

struct AuthorizationText {
  std::string_view text;
  bool isError = false;
};

[[nodiscard]] constexpr AuthorizationText photosAuthorizationText(PhotosAuthorization status) {
  switch (status) {
    case PhotosAuthorization::NotDetermined:
      return {
          "Explicit user permission is required for photo library access, but the user has not yet granted "
          "or "
          "denied such permission",
          false};
    case PhotosAuthorization::Restricted:
      return {"We are not authorized to access the photo library, and the user cannot grant such permission!",
              true};
    case PhotosAuthorization::Denied:
      return {"The user has explicitly denied us access to the photo library", true};
    case PhotosAuthorization::Authorized:
      return {"The user has explicitly granted us access to the photo library", false};
  }
  return {"Unknown status info!", true};
}

}  // namespace lumivane

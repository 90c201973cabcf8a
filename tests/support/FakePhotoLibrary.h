// A photo library that a test fills, and that cannot be read when the test wants it so.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "collection/albums/PhotoLibrary.h"

namespace lumivane {

class FakePhotoLibrary final : public PhotoLibrary {
 public:
  AlbumList list;
  std::map<std::string, std::vector<AlbumPicture>> members;  // by the album's identifier
  std::optional<std::string> problem;                        // why nothing can be read

  [[nodiscard]] Result<AlbumList> albums(std::stop_token /*stop*/) const override {
    if (problem) return Error{*problem};
    return list;
  }
  [[nodiscard]] Result<std::vector<AlbumPicture>> pictures(const Album& album, AlbumDetail /*detail*/,
                                                           std::stop_token /*stop*/) const override {
    if (problem) return Error{*problem};
    const auto found = members.find(album.identifier);
    return found == members.end() ? std::vector<AlbumPicture>() : found->second;
  }
};

}  // namespace lumivane

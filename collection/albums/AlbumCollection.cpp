#include "collection/albums/AlbumCollection.h"

#include <algorithm>
#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr std::size_t kMostListed = 900;

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text.append(text.empty() ? "" : ", ").append(part);
  return text;
}

}  // namespace

std::vector<Album> albumsLoaded(Result<AlbumList> answer, Log& log) {
  if (!answer) log.error(answer.error());
  if (answer && !answer.value().foundLibrary) log.error("mediasource = NULL!");
  if (!answer || !answer.value().foundLibrary) return {};
  std::vector<Album> albums = std::move(answer.value().albums);
  for (const Album& album : albums) log.information("album name = " + printable(album.name));
  log.information("num albums = " + std::to_string(albums.size()));
  return albums;
}

const Album* findAlbum(const std::vector<Album>& albums, std::string_view name, Log& log) {
  const auto found = std::ranges::find(albums, name, &Album::name);
  if (found != albums.end()) return &*found;
  log.error("Could not find album: " + printable(name) + "!");
  return nullptr;
}

CollectedAlbum collectAlbum(const std::string& albumName, const Result<std::vector<AlbumPicture>>& members,
                            Log& log) {
  constexpr std::string_view kPackage = ".photoslibrary/";
  CollectedAlbum collected;
  if (!members) {
    log.error(members.error());
    return collected;
  }
  std::vector<std::string> paths;
  for (const AlbumPicture& member : members.value()) {
    if (member.mediaType != MediaType::Picture || member.hidden) continue;
    const bool canBeShown = member.isPresent && !member.path.empty();
    if (canBeShown) paths.push_back(member.path);
    if (!canBeShown) ++collected.numMissing;
  }
  if (collected.numMissing > 0) {
    log.information("pictures of album " + printable(albumName) +
                    " left out because their files are not here = " + std::to_string(collected.numMissing));
  }
  collected.end = AlbumEnd::Empty;
  if (paths.empty()) return collected;
  const std::size_t package = paths.front().find(kPackage);
  if (package == std::string::npos) {
    log.error("Could not find '.photoslibrary' in path of photos!");
    collected.end = AlbumEnd::OutsideLibrary;
    return collected;
  }
  collected.end = AlbumEnd::Collected;
  collected.mainDirectoryLocation = paths.front().substr(0, package + kPackage.size());
  collected.imagefiles = std::move(paths);
  log.information("Album images path prefix = " + printable(collected.mainDirectoryLocation) + ".");
  return collected;
}

std::optional<std::string> pictureDescription(const AlbumPicture& picture) {
  std::string description = picture.comment;
  std::ranges::replace_if(
      description, [](char c) { return c == '\r' || c == '\n'; }, ',');
  for (const std::string& part : {joined(picture.keywords), joined(picture.places)}) {
    if (part.empty()) continue;
    description.append(description.empty() ? "" : ". ").append(part);
  }
  if (description.empty()) return std::nullopt;
  return description;
}

void listImages(const std::vector<std::string>& imagefiles, Log& log) {
  log.information("List of Images (" + std::to_string(imagefiles.size()) + ")");
  const std::size_t listed = std::min(imagefiles.size(), kMostListed);
  for (std::size_t i = 0; i < listed; ++i) {
    log.information(std::to_string(i) + ". file = " + printable(imagefiles[i]));
  }
}

}  // namespace lumivane

// lumivane albums
#include <nlohmann/json.hpp>

#include "collection/albums/AlbumCollection.h"
#include "platform/PrintableText.h"
#include "tools/PhotoLibraryArgument.h"
#include "tools/Tool.h"

namespace lumivane {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kHelp =
    "Usage: lumivane albums [--json] [--album NAME] [LIBRARY]\n"
    "\n"
    "Lists the albums of a photo library: how many pictures, a tab, the name. LIBRARY is a\n"
    "*.photoslibrary package; else the one that $LUMIVANE_PHOTOS_LIBRARY names, else the\n"
    "first one in the Pictures folder. Nothing in the library is changed.\n"
    "\n"
    "  --json        one JSON object a line\n"
    "  --album NAME  list the files of the first album of that name instead\n";

std::string_view nameOf(MediaType type) {
  switch (type) {
    case MediaType::Picture:
      return "picture";
    case MediaType::Movie:
      return "movie";
    case MediaType::Other:
      break;
  }
  return "other";
}

std::string jsonLine(const Album& album) {
  Json object;
  object["name"] = album.name;
  object["identifier"] = album.identifier;
  object["pictures"] = album.numPictures;
  return object.dump();
}

std::string jsonLine(const AlbumPicture& picture) {
  const std::optional<std::string> description = pictureDescription(picture);
  Json object;
  object["path"] = picture.path.empty() ? Json(nullptr) : Json(picture.path);
  object["present"] = picture.isPresent;
  object["type"] = nameOf(picture.mediaType);
  object["hidden"] = picture.hidden;
  object["description"] = description ? Json(*description) : Json(nullptr);
  return object.dump();
}

ExitStatus listMembers(const Tool& tool, const PhotoLibrary& library, const Album& album, bool json) {
  const AlbumDetail detail = json ? AlbumDetail::Descriptions : AlbumDetail::Files;
  const Result<std::vector<AlbumPicture>> members = library.pictures(album, detail, {});
  if (!members) return fail(tool, members.error());
  for (const AlbumPicture& member : members.value()) {
    if (json) tool.out << jsonLine(member) << '\n';
    if (!json && !member.path.empty()) tool.out << printable(member.path) << '\n';
  }
  return ExitStatus::Done;
}

ExitStatus listAlbums(const Tool& tool, const Arguments& arguments) {
  const bool json = arguments.has("--json");
  const SqlitePhotoLibrary library = photoLibraryFor(tool, arguments.operands);
  const std::optional<std::vector<Album>> albums = albumsFor(tool, library);
  if (!albums) return ExitStatus::Failed;
  if (const std::string* name = arguments.valueOf("--album")) {
    const Album* album = findAlbum(*albums, *name, tool.log);
    return album == nullptr ? ExitStatus::Failed : listMembers(tool, library, *album, json);
  }
  for (const Album& album : *albums) {
    if (json) tool.out << jsonLine(album) << '\n';
    if (!json) tool.out << album.numPictures << '\t' << printable(album.name) << '\n';
  }
  return ExitStatus::Done;
}

}  // namespace

ExitStatus albumsCommand(const Tool& tool, const std::vector<std::string>& words) {
  const CheckedArguments checked =
      checkArguments(tool, words, {kHelp, {{"--json", false}, {"--album", true}}, 0, 1});
  return checked.end ? *checked.end : listAlbums(tool, checked.arguments);
}

}  // namespace lumivane

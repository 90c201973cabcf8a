// What others make: monitors, photo libraries, the process that opens pictures.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "collection/albums/SqlitePhotoLibrary.h"
#include "compositor/model/Bitmap.h"
#include "imaging/process/DecoderProtocol.h"
#include "platform/Edid.h"
#include "tests/fuzz/FuzzTargets.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

}  // namespace

void fuzzEdid(std::string_view bytes) {
  const auto edid = parseEdid(bytes);
  if (!edid || !edid->name) return;
  promise(!edid->name->empty() && edid->name->size() <= 13);
  promise(std::ranges::all_of(*edid->name, [](char c) { return c >= ' ' && c <= '~'; }));
}

// The bytes are the database of a package. Not one of them changes, and nothing joins them.
void fuzzPhotoLibrary(std::string_view bytes) {
  static const TemporaryFolder folder;
  const std::filesystem::path package = std::filesystem::path(folder.path()) / "a.photoslibrary";
  const std::filesystem::path database = package / "database" / "Photos.sqlite";
  std::filesystem::create_directories(database.parent_path());
  std::ofstream(database, std::ios::binary | std::ios::trunc) << bytes;
  const SqlitePhotoLibrary library(package.string(), "", "C");
  const Result<AlbumList> albums = library.albums({});
  if (!albums) promise(!albums.error().empty() && albums.error().find('\n') == std::string::npos);
  const std::size_t looked = albums ? std::min<std::size_t>(albums.value().albums.size(), 4) : 0;
  for (std::size_t i = 0; i < looked; ++i) {
    const auto pictures = library.pictures(albums.value().albums[i], AlbumDetail::Descriptions, {});
    if (!pictures) continue;
    for (const AlbumPicture& picture : pictures.value())
      promise(picture.path.empty() || picture.path.front() == '/');
  }
  promise(contentOf(database) == bytes);
  promise(std::distance(std::filesystem::directory_iterator(database.parent_path()), {}) == 1);
}

// An answer that was understood says what it would be written as, and nothing in it leads outside of what was lent.
void fuzzDecoderAnswer(std::string_view bytes) {
  const std::span<const std::byte> message = std::as_bytes(std::span(bytes));
  if (const auto request = requestIn(message)) promise(std::ranges::equal(encoded(*request), message));
  const auto answer = answerIn(message);
  if (!answer) return;
  promise(std::ranges::equal(encoded(*answer), message));
  if (const auto* decoded = std::get_if<DecodeAnswer>(&*answer)) {
    if (!decoded->decoded) return;
    promise(decoded->orientation >= 1 && decoded->orientation <= 8);
    promise(decoded->size.width > 0 && decoded->size.height > 0 && !packedLevels(decoded->size).empty());
    if (decoded->inPlanes)
      promise(packedPlanes(decoded->size, decoded->chroma).bytes <= packedLevelsBytes(decoded->size));
  }
  if (const auto* measured = std::get_if<MeasureAnswer>(&*answer)) {
    promise(measured->sizes.size() <= kMostPathsAtOnce);
    for (const auto& size : measured->sizes) promise(!size || (size->width >= 0 && size->height >= 0));
  }
}

}  // namespace lumivane

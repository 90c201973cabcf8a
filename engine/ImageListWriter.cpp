#include "engine/ImageListWriter.h"

#include <utility>

#include "collection/ImageListFile.h"

namespace lumivane {

void ImageListWriter::keep(std::string imageListPath, ImageList imagefiles) {
  const std::lock_guard lock(wantedMutex_);
  wanted_ = Wanted{std::move(imageListPath), std::move(imagefiles)};
}

std::optional<ImageListWriter::Wanted> ImageListWriter::take() {
  const std::lock_guard lock(wantedMutex_);
  return std::exchange(wanted_, std::nullopt);
}

void ImageListWriter::write() {
  const std::lock_guard lock(writing_);
  if (const std::optional<Wanted> wanted = take())
    saveImageList(files_, wanted->imageListPath, wanted->imagefiles, log_);
}

}  // namespace lumivane

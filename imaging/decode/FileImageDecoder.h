// Opens picture files of every type that is shown: JPEG, PNG, GIF, TIFF, WebP, HEIF (HEIC, AVIF), JPEG XL, JPEG 2000,
// BMP and camera raw. The type is told by the content. Of animations and of several pages it is the first picture.
//
// Threads: any; pictures may be opened and decoded on several threads at once.
// Owns:    a share of the source of pixel buffers; decoded pictures may outlive it.
// Units:   pixels.
// Errors:  see ImageDecoder.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "imaging/ImageDecoder.h"
#include "imaging/decode/PixelPool.h"

namespace lumivane {

class FileImageDecoder final : public ImageDecoder {
 public:
  // With a pool of its own.
  explicit FileImageDecoder(PixelPool::Limits limits = {});
  explicit FileImageDecoder(std::shared_ptr<PixelSource> pixels) : pixels_(std::move(pixels)) {}

  [[nodiscard]] std::unique_ptr<ImageSource> open(const std::string& path) override;

 private:
  std::shared_ptr<PixelSource> pixels_;
};

}  // namespace lumivane

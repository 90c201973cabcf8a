#include "CodecFloors.h"

#include <cstdio>
// libjpeg's header expects <cstdio> before it.
#include <jpeglib.h>
#include <libheif/heif.h>
#include <png.h>
#include <tiffio.h>
#include <webp/decode.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace lumivane {
namespace {

constexpr std::size_t kChannels = 4;

const unsigned char* firstOf(FileBytes file) {
  return reinterpret_cast<const unsigned char*>(file.data());
}

// Memory for a picture, with its rows.
struct Rows {
  Rows(PixelPool& pool, std::size_t width, std::size_t height)
      : pixels(pool.take(width * height * kChannels)), stride(width * kChannels) {}
  std::uint8_t* at(std::size_t y) {
    return reinterpret_cast<std::uint8_t*>(pixels.bytes().data()) + y * stride;
  }
  PixelBuffer pixels;
  std::size_t stride;
};

// Bytes that libtiff reads as a file.
struct MemoryFile {
  FileBytes bytes;
  std::size_t position = 0;

  static tmsize_t read(thandle_t handle, void* into, tmsize_t count) {
    auto& file = *static_cast<MemoryFile*>(handle);
    const std::size_t some = std::min(static_cast<std::size_t>(count), file.bytes.size() - file.position);
    std::memcpy(into, file.bytes.data() + file.position, some);
    file.position += some;
    return static_cast<tmsize_t>(some);
  }
  static tmsize_t write(thandle_t, void*, tmsize_t) { return 0; }
  static toff_t seek(thandle_t handle, toff_t offset, int whence) {
    auto& file = *static_cast<MemoryFile*>(handle);
    if (whence == SEEK_CUR) offset += file.position;
    if (whence == SEEK_END) offset += file.bytes.size();
    file.position = std::min<std::size_t>(offset, file.bytes.size());
    return file.position;
  }
  static int close(thandle_t) { return 0; }
  static toff_t size(thandle_t handle) { return static_cast<MemoryFile*>(handle)->bytes.size(); }
  static int map(thandle_t handle, void** base, toff_t* count) {
    const FileBytes bytes = static_cast<MemoryFile*>(handle)->bytes;
    *base = const_cast<std::byte*>(bytes.data());
    *count = bytes.size();
    return 1;
  }
  static void unmap(thandle_t, void*, toff_t) {}
};

void spread(const std::uint8_t* rgb, std::uint8_t* rgba, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i, rgb += 3, rgba += kChannels) {
    rgba[0] = rgb[0];
    rgba[1] = rgb[1];
    rgba[2] = rgb[2];
    rgba[3] = 255;
  }
}

}  // namespace

bool decodeJpegAlone(FileBytes file, PixelPool& pool) {
  jpeg_error_mgr errors{};
  jpeg_decompress_struct decompress{};
  decompress.err =
      jpeg_std_error(&errors);  // ends the program over a damaged picture: we have made it ourselves
  jpeg_create_decompress(&decompress);
  jpeg_mem_src(&decompress, firstOf(file), file.size());
  jpeg_read_header(&decompress, TRUE);
  decompress.out_color_space = JCS_EXT_RGBA;
  jpeg_start_decompress(&decompress);
  Rows rows(pool, decompress.output_width, decompress.output_height);
  std::array<JSAMPROW, 16> some{};
  while (decompress.output_scanline < decompress.output_height) {
    for (std::size_t i = 0; i < some.size(); ++i) some[i] = rows.at(decompress.output_scanline + i);
    const JDIMENSION left = decompress.output_height - decompress.output_scanline;
    jpeg_read_scanlines(&decompress, some.data(), std::min<JDIMENSION>(some.size(), left));
  }
  jpeg_finish_decompress(&decompress);
  jpeg_destroy_decompress(&decompress);
  return true;
}

bool decodeJpegPlanesAlone(FileBytes file, PixelPool& pool) {
  constexpr std::size_t kRows = 16;  // of light; half as many of each colour
  jpeg_error_mgr errors{};
  jpeg_decompress_struct decompress{};
  decompress.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&decompress);
  jpeg_mem_src(&decompress, firstOf(file), file.size());
  jpeg_read_header(&decompress, TRUE);
  decompress.raw_data_out = TRUE;
  decompress.out_color_space = decompress.jpeg_color_space;
  jpeg_start_decompress(&decompress);
  // Whole blocks of 16 pixels, as the library writes them.
  const std::size_t width = (decompress.output_width + 15) / 16 * 16;
  const std::size_t height = (decompress.output_height + kRows - 1) / kRows * kRows;
  PixelBuffer pixels = pool.take(width * height * 3 / 2);
  auto* light = reinterpret_cast<std::uint8_t*>(pixels.bytes().data());
  std::uint8_t* const colours[] = {light + width * height, light + width * height * 5 / 4};
  std::array<std::array<JSAMPROW, kRows>, 3> rows{};
  std::array<JSAMPARRAY, 3> planes = {rows[0].data(), rows[1].data(), rows[2].data()};
  while (decompress.output_scanline < decompress.output_height) {
    const std::size_t y = decompress.output_scanline;
    for (std::size_t i = 0; i < kRows; ++i) rows[0][i] = light + (y + i) * width;
    for (std::size_t i = 0; i < kRows / 2; ++i) {
      rows[1][i] = colours[0] + (y / 2 + i) * (width / 2);
      rows[2][i] = colours[1] + (y / 2 + i) * (width / 2);
    }
    if (jpeg_read_raw_data(&decompress, planes.data(), kRows) == 0) return false;
  }
  jpeg_finish_decompress(&decompress);
  jpeg_destroy_decompress(&decompress);
  return true;
}

bool decodePngAlone(FileBytes file, PixelPool& pool) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &file, [](png_structp reader, png_bytep into, std::size_t count) {
    auto& rest = *static_cast<FileBytes*>(png_get_io_ptr(reader));
    std::memcpy(into, rest.data(), count);
    rest = rest.subspan(count);
  });
  png_read_info(png, info);
  png_set_filler(png, 255, PNG_FILLER_AFTER);
  png_read_update_info(png, info);
  const std::size_t height = png_get_image_height(png, info);
  Rows rows(pool, png_get_image_width(png, info), height);
  const bool fits = png_get_rowbytes(png, info) == rows.stride;
  for (std::size_t y = 0; fits && y < height; ++y) png_read_row(png, rows.at(y), nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
  return fits;
}

bool decodeTiffAlone(FileBytes file, PixelPool& pool) {
  MemoryFile memory{file};
  const std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(
      TIFFClientOpen("memory", "r", &memory, &MemoryFile::read, &MemoryFile::write, &MemoryFile::seek,
                     &MemoryFile::close, &MemoryFile::size, &MemoryFile::map, &MemoryFile::unmap),
      &TIFFClose);
  if (!tiff) return false;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t rowsPerStrip = 0;
  TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
  TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height);
  TIFFGetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, &rowsPerStrip);
  Rows rows(pool, width, height);
  std::vector<std::uint8_t> strip(static_cast<std::size_t>(TIFFStripSize(tiff.get())));
  for (std::uint32_t y = 0; y < height; y += rowsPerStrip) {
    const tmsize_t got = TIFFReadEncodedStrip(tiff.get(), TIFFComputeStrip(tiff.get(), y, 0), strip.data(),
                                              static_cast<tmsize_t>(strip.size()));
    if (got <= 0) return false;
    spread(strip.data(), rows.at(y), static_cast<std::size_t>(got) / 3);
  }
  return true;
}

bool decodeWebpAlone(FileBytes file, PixelPool& pool) {
  int width = 0;
  int height = 0;
  if (WebPGetInfo(firstOf(file), file.size(), &width, &height) == 0) return false;
  Rows rows(pool, static_cast<std::size_t>(width), static_cast<std::size_t>(height));
  return WebPDecodeRGBAInto(firstOf(file), file.size(), rows.at(0), rows.pixels.bytes().size(),
                            static_cast<int>(rows.stride)) != nullptr;
}

bool decodeHeifAlone(FileBytes file, PixelPool& /*pool*/) {
  const std::unique_ptr<heif_context, decltype(&heif_context_free)> context(heif_context_alloc(),
                                                                            &heif_context_free);
  heif_image_handle* handle = nullptr;
  heif_image* image = nullptr;
  heif_error error =
      heif_context_read_from_memory_without_copy(context.get(), file.data(), file.size(), nullptr);
  if (error.code == heif_error_Ok) error = heif_context_get_primary_image_handle(context.get(), &handle);
  if (error.code == heif_error_Ok) {
    error = heif_decode_image(handle, &image, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr);
  }
  heif_image_release(image);
  heif_image_handle_release(handle);
  return error.code == heif_error_Ok;
}

}  // namespace lumivane

// Tells the type of a picture from its first bytes; names and extensions are never looked at.
//
// Threads: any; a pure function.
// Errors:  what is not shown (text, vector graphics, documents, films) is Unknown.
#pragma once

#include <cstddef>
#include <span>

namespace lumivane {

enum class PictureType { Unknown, Jpeg, Png, Gif, Tiff, WebP, Heif, Jxl, Jp2, Bmp, CameraRaw };

// How much of the file's start is needed.
inline constexpr std::size_t kTypeBytes = 512;

// Tiff may still turn out to be camera raw, most of which is written in TIFF's structure.
[[nodiscard]] PictureType pictureTypeOf(std::span<const std::byte> start);

}  // namespace lumivane

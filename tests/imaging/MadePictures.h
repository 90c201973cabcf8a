// Picture files that tests make for themselves with libvips.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <vips/vips8>

namespace lumivane {

// Four even quarters: red, green, blue, white (upper left, upper right, lower left, lower right).
[[nodiscard]] vips::VImage fourQuarters(int width, int height);

// The same with an orientation code in its Exif block.
[[nodiscard]] vips::VImage fourQuartersTurned(int width, int height, int orientation);

[[nodiscard]] std::string fileContent(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& content);

}  // namespace lumivane

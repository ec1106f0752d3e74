// Which kind of image a file holds, by its first bytes.
#pragma once

#include <cstdio>
#include <optional>

namespace hdiplot {

enum class ImageFormat { kPng, kJpeg, kBmp, kTiff, kGif };

// Reads from the beginning of the file and leaves it there. None for any other file.
[[nodiscard]] std::optional<ImageFormat> FormatOf(std::FILE* file);

}  // namespace hdiplot

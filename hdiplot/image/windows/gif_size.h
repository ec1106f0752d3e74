// The size of GIF images, for which libraries have to read all of a file.
#pragma once

#include <filesystem>
#include <optional>

#include "hdiplot/image/image_decoder.h"

namespace hdiplot {

// Of the first image. None for a broken file.
[[nodiscard]] std::optional<ImageSize> GifSize(const std::filesystem::path& file);

}  // namespace hdiplot

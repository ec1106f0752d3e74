// Decoding the image files that drawings refer to.
#pragma once

#include <filesystem>

#include "hdiplot/image/image_decoder.h"

namespace hdiplot {

// The first image of a PNG, JPEG, BMP, TIFF or GIF file, whatever the file's name ends in. The top row comes
// first. Images of up to 8 bits keep 1 or 8 bits with a palette, whose fourth byte is the alpha; all others
// have 32 bits, the fourth byte their alpha too. Throws FileError for a file that is missing, no such image,
// larger than a plot takes, or so broken that nothing of the image can be read.
[[nodiscard]] DecodedImage ReadImageFile(const std::filesystem::path& file);

}  // namespace hdiplot

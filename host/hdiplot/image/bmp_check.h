// Whether a BMP file lacks some of its pixels, which decoders do not ask.
#pragma once

#include <filesystem>

namespace hdiplot {

// False for a file that is no BMP, and where the pixels are compressed.
[[nodiscard]] bool IsCutBmp(const std::filesystem::path& file);

}  // namespace hdiplot
